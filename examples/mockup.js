// A textured mock-up: a gift box with a pile of books in front of it, each printing the example
// artwork (examples/artwork), lit by Easy Lighting so that the books shadow one another, the box
// and the floor. Run from the repository's folder (the artwork paths are relative to it):
// xvfb-run -a build/bin/vantrel render --script examples/mockup.js --out mockup.png --width 900
var box = document.root.addShape("generator.Boxes.Box", "Gift Box");
box.artwork = "examples/artwork/gift-box.png";
box.position = [4, 22, 0];
box.rotation = [0, 0, -12];
var novel = document.root.addShape("generator.Book.Paperback", "Novel");
novel.artwork = "examples/artwork/paperback.png";
var atlas = document.root.addShape("generator.Book.HardCover", "Atlas");
atlas.artwork = "examples/artwork/hard-cover.png";
tools.stack([atlas, novel], {repeats: 2, twistStep: 9, seed: 4, offsetDisorder: 0.4});
var dvd = document.root.addShape("generator.DiscBox.DVD", "Film");
dvd.artwork = "examples/artwork/dvd-case.png";
dvd.position = [24, -4, 0];
dvd.rotation = [0, 0, 20];
tools.easyLighting({hangle: -50, vangle: 42, contrast: 0.85, blur: 0.3});
tools.fitToView({padding: 0.08});
print("mock-up:", document.root.children.length, "top-level nodes, the pile",
      document.findNode("Stack").children.length, "books high");
