// Lifts the shelf's books into the air, then puts them back on the floor with the tool.
// vantrel run --script examples/shelf.js --script examples/floor.js
var books = document.findNode("Shelf").children;
books.forEach(function (book, i) { book.position = [book.position[0], book.position[1], 10 + 5 * i]; });
document.selection = books;
print("lowest point before:", Math.min.apply(null, books.map(function (b) { return b.worldBox[2]; })));
document.runTool("Put On The Floor");
print("lowest point after:", Math.min.apply(null, books.map(function (b) { return b.worldBox[2]; })).toFixed(4));
print("undo steps:", document.undoCount);
