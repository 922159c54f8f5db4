// Repeats a crate from a script: the group takes the crate's place and transform, the copies
// follow in cell order, and the grid is one undo step of the script.
var crate = document.root.addShape("generator.Boxes.Box", "Crate");
crate.position = [10, 20, 0];
crate.rotation = [0, 0, 90];
tools.stepAndRepeat(crate, {repeatx: 4, repeaty: 2, repeatz: 1, stepx: 5, stepy: -2.5});
var group = document.findNode("Crate");
var names = group.children.map(function (c) { return c.name; });
print("group", group.type, group.position, group.rotation, "holds", names.length);
print(names[0], names[1], names[7]);
print("cell 7 at", group.children[7].position, "crate at", crate.position, crate.rotation);
