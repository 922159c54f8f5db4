// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
// Scripts: dead nodes, booby-trapped settings, deep arguments, numbers that are not finite, endless
// scripts.

#include "tests/faults/faultcase.h"

namespace vantrel::test {

namespace {

void prepareScene(const QDir &dir)
{
    writeFile(dir, QStringLiteral("in.vscene"), smallScene());
}

// A row that runs the script on the small scene (a box "Box" and a book "Book") and would save
// it back over the same file: after the error the file must be as it was.
FaultCase onScene(const char *name, const QString &script, const QString &message)
{
    return FaultCase{.name = name,
                     .arguments
                     = {"run", "{dir}/in.vscene", "-e", script, "--save", "{dir}/in.vscene"},
                     .exitCode = 1,
                     .message = message,
                     .prepare = prepareScene};
}

// The whole error line of an inline script's first line (other lines may follow it: a
// sanitizer's summary, for one).
QString error(const char *type, const char *text)
{
    return QStringLiteral("(?m)-e#1:1: %1: %2$").arg(QLatin1String(type), QLatin1String(text));
}

const char *const gone = "This node no longer exists";
const char *const notArray = "The first parameter has to be an array of nodes";
const char *const notShape = "The first parameter has be a shape node";
const char *const tooDeep = "The parameter is nested more than 64 levels deep";

// 50 000 levels of {x: {x: ...}} in o.
const QString deep = QStringLiteral("var o = {}; for (var i = 0; i < 50000; ++i) o = {x: o};");
// The getter "seed" (or another key) that removes the node a.
const QString removingGetter
    = QStringLiteral("var a = document.findNode('%1'); var p = {};"
                     "p.__defineGetter__('%2', function () { a.remove(); return 2; });");

// A table, one row per input, however long: the size rule is for functions that do things.
// NOLINTNEXTLINE(readability-function-size)
std::vector<FaultCase> scriptsCases()
{
    return {
        // A node out of the scene: every member refuses it at once, in the same script.
        onScene("RemovedNodeToStack",
                "var a = document.findNode('Book'); a.remove(); tools.stack([a], {})",
                error("Error", notArray)),
        onScene("UndoneNodeToStack",
                "var a = document.root.addShape('generator.Book.HardCover', 'New');"
                "document.undo(); tools.stack([a], {})",
                error("Error", notArray)),
        onScene("RemovedNodeToStepAndRepeat",
                "var a = document.findNode('Box'); a.remove(); tools.stepAndRepeat(a, {})",
                error("Error", notShape)),
        onScene("RemovedNodeTakesNoName",
                "var a = document.findNode('Box'); a.remove(); a.name = 'Crate'",
                error("TypeError", gone)),
        onScene("RemovedNodeTakesNoPosition",
                "var a = document.findNode('Box'); a.remove(); a.position = [1, 2, 3]",
                error("TypeError", gone)),
        onScene("RemovedNodeTakesNoParameter",
                "var a = document.findNode('Box'); a.remove(); a.setParam('width', 5)",
                error("TypeError", gone)),
        onScene("RemovedNodeTakesNoChild",
                "var a = document.findNode('Box'); a.remove(); a.addGroup('G')",
                error("TypeError", gone)),
        onScene("RemovedNodeRemovedAgain",
                "var a = document.findNode('Box'); a.remove(); a.remove()",
                error("TypeError", gone)),
        onScene("RemovedNodeSelected",
                "var a = document.findNode('Box'); a.remove(); document.selection = [a]",
                error("TypeError", gone)),
        onScene("PreviewCopyAfterCancel",
                "document.selection = [document.findNode('Book')];"
                "document.runTool('Stack...');"
                "var copy = document.findNode('Stack').children[1];"
                "document.window.cancel(); tools.stack([copy], {})",
                error("Error", notArray)),
        onScene("PreviewCopyAfterCancelRenamed",
                "document.selection = [document.findNode('Book')];"
                "document.runTool('Stack...');"
                "var copy = document.findNode('Stack').children[1];"
                "document.window.cancel(); copy.name = 'Kept?'",
                error("TypeError", gone)),

        // A dictionary whose getter changes the scene while it is read.
        onScene("GetterRemovesShapeForStepAndRepeat",
                removingGetter.arg("Box", "repeatx") + "tools.stepAndRepeat(a, p)",
                error("Error", notShape)),
        onScene("GetterRemovesShapeForStack",
                removingGetter.arg("Book", "seed") + "tools.stack([a], p)",
                error("Error", notArray)),
        onScene("GetterFreesShapeForStack",
                "var a = document.root.addShape('generator.Book.HardCover', 'New'); var p = {};"
                "p.__defineGetter__('seed', function () {"
                "  document.undo(); document.root.addGroup('Other'); return 1; });"
                "tools.stack([a], p)",
                error("Error", notArray)),
        onScene("GetterRemovesParentForAddShape",
                "var g = document.root.addGroup('G');"
                "g.addShape('generator.Boxes.Box', 'X', {get width() { g.remove(); return 5; }})",
                error("TypeError", gone)),

        // Arguments nested deeper than a reader goes.
        onScene("DeepFitToView", deep + "tools.fitToView(o)", error("Error", tooDeep)),
        onScene("DeepStackSettings",
                deep + "tools.stack([document.findNode('Book')], {a: o})",
                error("Error", tooDeep)),
        onScene("DeepShapeParameters",
                deep + "document.root.addShape('generator.Boxes.Box', 'X', o)",
                error("Error", tooDeep)),
        onScene("DeepParameterValue",
                deep + "document.findNode('Box').setParam('width', o)",
                error("Error", tooDeep)),
        onScene("SelfContainingSettings",
                "var o = {}; o.o = o; tools.easyLighting(o)",
                error("Error", tooDeep)),
        onScene("HugeSparseArraySetting",
                "var a = []; a.length = 4294967295; tools.fitToView({padding: a})",
                error("Error", "The parameter holds more than 1000000 values")),
        onScene("DeepScene",
                "var g = document.root; for (var i = 0; i < 300; ++i) g = g.addGroup('G')",
                error("Error", "Nodes cannot be nested more than 256 levels deep")),

        // What a getter or a valueOf throws is the script's error, and nothing changed.
        onScene("GetterThrowsInFitToView",
                "tools.fitToView({get padding() { throw new Error('boom'); }})",
                error("Error", "boom")),
        onScene("ValueOfThrowsInFitToView",
                "tools.fitToView({padding: {valueOf: function () { throw 'boom'; }}})",
                "(?m)-e#1:1: boom$"),
        onScene("GetterThrowsInEasyLighting",
                "tools.easyLighting({get blur() { throw new Error('boom'); }})",
                error("Error", "boom")),
        onScene("ElementGetterThrowsInStack",
                "var l = [document.findNode('Book')];"
                "l.__defineGetter__(1, function () { throw new Error('boom'); }); l.length = 2;"
                "tools.stack(l, {})",
                error("Error", "boom")),

        // The Stack window when a re-sort finds no row's shape: the stack stays, nothing
        // crashes, and OK keeps it.
        {.name = "StackWindowResortAfterRename",
         .arguments = {"run",
                       "{dir}/in.vscene",
                       "-e",
                       "var b = document.findNode('Book'); document.selection = [b];"
                       "document.runTool('Stack...'); b.name = 'Renamed';"
                       "document.window.moveRow(0, 0);"
                       "print(document.window.rows, document.findNode('Stack').children.length);"
                       "document.window.accept()",
                       "--save",
                       "{dir}/out.vscene"},
         .exitCode = 0,
         .prepare = prepareScene,
         .check =
             [](const QDir &dir, const FaultRun &run) {
                 EXPECT_EQ(run.out, QStringLiteral("Book 3\n"));
                 EXPECT_TRUE(dir.exists(QStringLiteral("out.vscene")));
             }},

        // Numbers beyond single precision: refused at the assignment, naming the member.
        onScene("PositionBeyondFloat",
                "document.findNode('Box').position = [1e39, 0, 0]",
                error("RangeError",
                      "position must be three finite numbers that fit in single precision")),
        onScene("RotationNaN",
                "document.findNode('Box').rotation = [0, NaN, 0]",
                error("RangeError",
                      "rotation must be three finite numbers that fit in single precision")),
        onScene(
            "ScaleInfinite",
            "document.findNode('Box').scale = [1, 1, Infinity]",
            error("RangeError", "scale must be three finite numbers that fit in single precision")),
        onScene("CameraTargetBeyondFloat",
                "document.camera.target = [0, 0, 1e300]",
                error("RangeError",
                      "target must be three finite numbers that fit in single precision")),
        onScene(
            "CameraDistanceBeyondFloat",
            "document.camera.distance = 1e39",
            error("RangeError", "distance must be a finite number that fits in single precision")),
        onScene("CameraFieldOfViewInfinite",
                "document.camera.fieldOfView = -Infinity",
                error("RangeError",
                      "fieldOfView must be a finite number that fits in single precision")),
        onScene("CameraAspectRatioBeyondFloat",
                "document.camera.aspectRatio = 1e39",
                error("RangeError",
                      "aspectRatio must be a finite number that fits in single precision")),
        onScene(
            "AmbientBeyondFloat",
            "document.ambient = 1e300",
            error("RangeError", "ambient must be a finite number that fits in single precision")),
        onScene(
            "LightIntensityBeyondFloat",
            "document.root.addLight('L').intensity = 1e39",
            error("RangeError", "intensity must be a finite number that fits in single precision")),
        onScene("LightShadowBlurNaN",
                "document.root.addLight('L').shadowBlur = NaN",
                error("RangeError",
                      "shadowBlur must be a finite number that fits in single precision")),
        onScene("ParameterBeyondFloat",
                "document.findNode('Box').setParam('width', 1e39)",
                error("Error", "Parameter \"width\" of generator.Boxes.Box cannot take 1e\\+39")),
        onScene("ShapeParameterNaN",
                "document.root.addShape('generator.Boxes.Box', 'X', {height: NaN})",
                error("Error", "Parameter \"height\" of generator.Boxes.Box cannot take NaN")),
        onScene("StackOffsetNaN",
                "tools.stack([document.findNode('Book')], {offsetX: NaN})",
                error("Error", "offsetX must be a finite number that fits in single precision")),
        onScene("StackTwistInfinite",
                "tools.stack([document.findNode('Book')], {twistStep: Infinity})",
                error("Error", "twistStep must be a finite number that fits in single precision")),
        onScene("StackOffsetBeyondFloat",
                "tools.stack([document.findNode('Book')], {offsetY: 1e39})",
                error("Error", "offsetY must be a finite number that fits in single precision")),
        onScene("StepAndRepeatStepInfinite",
                "tools.stepAndRepeat(document.findNode('Box'), {stepx: Infinity})",
                error("Error", "stepx must be a finite number that fits in single precision")),
        onScene("EasyLightingAngleNaN",
                "tools.easyLighting({hangle: NaN})",
                error("Error", "hangle must be a finite number that fits in single precision")),
        onScene("FitToViewPaddingBeyondFloat",
                "tools.fitToView({padding: '1e39'})",
                error("Error", "padding must be a finite number that fits in single precision")),
        onScene("WindowSliderBeyondFloat",
                "document.selection = [document.findNode('Book')];"
                "document.runTool('Stack...'); document.window.set('offsetX', 1e39)",
                error("Error", "The window has no setting \"offsetX\" that takes 1e\\+39")),

        // Odd arguments to the document's functions.
        onScene("FindNodeWithObject",
                "document.findNode({toString: function () { throw 'boom'; }})",
                error("Error", "Usage: document\\.findNode\\(name\\)")),
    };
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Scripts, FaultTest, ::testing::ValuesIn(scriptsCases()), faultCaseName);

} // namespace vantrel::test
