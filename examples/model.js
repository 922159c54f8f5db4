// Puts the sample jar (a model file, examples/models/jar.obj) on a shelf and reports what was
// read. Relative model paths start from the working directory, so run this from the project's
// folder; a scene saved there finds the jar again, since scene files resolve relative model
// paths from their own folder.
// vantrel run --script examples/model.js --save jars.vscene
function fixed(values) {
    return values.map(function (v) { return v.toFixed(2); }).join(", ");
}
var shelf = document.root.addGroup("Jars");
var jar = shelf.addShape("generator.external.model", "Jam", {path: "examples/models/jar.obj"});
var second = shelf.addShape("generator.external.model", "Honey", {path: "examples/models/jar.obj"});
second.position = [9, 0, 0];
var box = jar.worldBox;
print("Jam:", jar.vertexCount, "vertices from", jar.params.path);
print("size:", fixed([box[3] - box[0], box[4] - box[1], box[5] - box[2]]), "cm");
print("both jars, world box:", fixed(shelf.worldBox));
