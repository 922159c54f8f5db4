document.root.addGroup("Made before the error");
undefinedFunction();
