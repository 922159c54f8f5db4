// Builds a small shelf of packaging: three books, a box and a disc case, and a light.
// vantrel run --script examples/shelf.js --save shelf.vscene
var shelf = document.root.addGroup("Shelf");
var novel = shelf.addShape("generator.Book.Paperback", "Novel", {width: 11, height: 18, thickness: 2.4});
novel.position = [-20, 0, 0];
var atlas = shelf.addShape("generator.Book.HardCover", "Atlas");
atlas.position = [0, 0, 0];
atlas.rotation = [0, 0, 15];
var carton = document.root.addShape("generator.Boxes.Box", "Carton", {width: 30, height: 20, depth: 20});
carton.position = [35, 10, 0];
var dvd = document.root.addShape("generator.DiscBox.DVD", "DVD", {coverAngle: 60});
dvd.position = [-45, -10, 0];
var lamp = document.root.addLight("Key Light");
lamp.position = [-60, -80, 120];
lamp.intensity = 0.7;
lamp.castShadows = true;
document.ambient = 0.3;
print("built", document.root.children.length, "top-level nodes;", shelf.children.length, "books");
