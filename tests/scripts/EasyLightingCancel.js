// Opens Easy Lighting as a user would, moves every slider and cancels: the scene is as before.
var before = document.dump();
document.runTool("Easy Lighting...");
var w = document.window;
w.set("angleH", -30);
w.set("angleV", 70);
w.set("contrast", 0.9);
w.set("blur", 0.1);
print("preview differs:", document.dump() !== before, "angleV", w.get("angleV"));
w.cancel();
print("window:", document.window, "unchanged:", document.dump() === before);
