// Opens Step and Repeat as a user would, changes counts and steps, and cancels: the scene is as
// before, the shape back in its place with its name and transform.
var box = document.findNode("Atlas");
document.selection = [box];
var before = document.dump();
document.runTool("Step and Repeat...");
var w = document.window;
w.set("repeatX", 6);
w.set("stepY", -3);
w.set("repeatZ", 4);
w.set("stepX", 12.5);
print("preview:", w.title, box.parent.name, box.name, box.parent.children.length, w.get("stepX"));
w.cancel();
print("window:", document.window, "unchanged:", document.dump() === before, box.name);
