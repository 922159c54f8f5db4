// Stacks the shelf's books twice over with a slight twist, as tools.stack does from a script.
// vantrel run --script examples/shelf.js --script examples/stack.js
var books = document.findNode("Shelf").children;
tools.stack(books, {repeats: 2, twistStep: 4, seed: 11, offsetDisorder: 0.3});
var stack = document.findNode("Stack");
stack.children.forEach(function (book, level) {
    print("level", level, book.name, "from z", book.worldBox[2].toFixed(2), "to", book.worldBox[5].toFixed(2),
          "turned", book.rotation[2].toFixed(1));
});
print("selected:", document.selection.map(function (n) { return n.name; }).join(", "));
