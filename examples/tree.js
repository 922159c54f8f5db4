// Prints the scene tree with each node's kind, place and size.
// vantrel run SCENE --script examples/tree.js
var kinds = {0: "root", 1: "shape", 2: "light", 3: "group"};
function show(node, depth) {
    var line = new Array(depth + 1).join("  ") + node.name + " (" + kinds[node.type] + ")";
    if (node.type !== 0)
        line += " at " + node.position.map(function (v) { return v.toFixed(1); }).join(", ");
    if (node.type === 1)
        line += " " + node.generator;
    print(line);
    node.children.forEach(function (child) { show(child, depth + 1); });
}
show(document.root, 0);
print("tools:", document.toolTitles().join(", "));
