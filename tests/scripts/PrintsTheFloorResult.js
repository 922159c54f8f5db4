var box = document.root.addShape("generator.Boxes.Box", "Box");
box.position = [0, 0, 12.5];
document.selection = [box];
print("message:[" + document.runTool("Put On The Floor") + "]", "z:" + box.worldBox[2]);
print("disabled:", (function () { try { document.selection = []; document.runTool("Stack..."); } catch (e) { return e.message; } })());
