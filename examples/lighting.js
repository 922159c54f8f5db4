// Lights the scene with Easy Lighting: one light, 135 degrees round from the front, 40 degrees up.
// vantrel run --script examples/shelf.js --script examples/lighting.js
tools.easyLighting({hangle: -135, vangle: 40, contrast: 0.65, blur: 0.2});
var light = document.findNode("EasyLight");
print("EasyLight at", light.position.map(function (c) { return c.toFixed(2); }).join(", "),
      "intensity", light.intensity.toFixed(2), "shadow blur", light.shadowBlur.toFixed(2),
      "ambient", document.ambient.toFixed(2));
