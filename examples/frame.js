// Frames everything visible with Fit To View: the camera as close as it can be, plus 5 %.
// vantrel run --script examples/shelf.js --script examples/frame.js
var camera = document.camera;
print("before: distance", camera.distance.toFixed(2), "aspect ratio", camera.aspectRatio.toFixed(3));
tools.fitToView({padding: 0.05});
print("after: distance", camera.distance.toFixed(2), "aspect ratio", camera.aspectRatio.toFixed(3),
      "target", camera.target.map(function (c) { return c.toFixed(2); }).join(", "));
