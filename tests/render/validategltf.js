// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Validates a .glb or .gltf file with the Khronos glTF validator and prints a JSON summary:
// {"errors": N, "warnings": N, "messages": [{"severity", "code", "message", "pointer"}]}.
// Exit status 0 without errors, 1 with errors, 2 when the file or the validator is missing.
// Usage: node validategltf.js VALIDATOR_MODULE_FOLDER FILE
'use strict';
const fs = require('fs');
const path = require('path');

const [modulePath, file] = process.argv.slice(2);
if (!modulePath || !file) {
    console.error('usage: node validategltf.js VALIDATOR_MODULE_FOLDER FILE');
    process.exit(2);
}
let validator;
try {
    validator = require(path.resolve(modulePath));
} catch (error) {
    console.error(`cannot load the glTF validator from ${modulePath}: ${error.message}`);
    process.exit(2);
}
const severities = ['error', 'warning', 'info', 'hint'];
validator.validateBytes(new Uint8Array(fs.readFileSync(file)), {
    uri: path.basename(file),
    maxIssues: 100,
    // Nothing outside the file is expected: images and buffers are inside it.
    externalResourceFunction: (uri) => Promise.reject(new Error(`external resource: ${uri}`)),
}).then((report) => {
    const messages = report.issues.messages.map((m) => ({
        severity: severities[m.severity] || String(m.severity),
        code: m.code,
        message: m.message,
        pointer: m.pointer,
    }));
    console.log(JSON.stringify({
        errors: report.issues.numErrors,
        warnings: report.issues.numWarnings,
        messages: messages,
    }));
    process.exit(report.issues.numErrors > 0 ? 1 : 0);
}, (error) => {
    console.error(`validation failed: ${error}`);
    process.exit(1);
});
