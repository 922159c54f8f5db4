// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "hostapp/core/document/document.h"
#include "hostapp/desktop/desktopexport.h"

#include <QOpenGLWidget>
#include <QPoint>
#include <QPointer>

#include <memory>

class QLabel;
class QOpenGLFramebufferObject;
class QTimer;

namespace vantrel::render {
class SceneDrawer;
}

namespace vantrel::host {

class BaseNode;
class NodeDrag;

// The desktop program's live 3D view: the document as its camera sees it, drawn like the
// pictures of `vantrel render` (shapes, floor, soft shadows) with the selected shapes marked, and
// redrawn whenever the scene or the camera changes. The mouse moves the document's camera (never
// an undo step) and selects shapes (a "Select" step, as any selection change is). A left drag
// that starts on a selected shape moves the selection instead (NodeDrag: one "Move" step), and
// the arrow keys nudge it (viewnudge.h: a "Nudge" step each).
//
// The camera's aspect ratio is document state: it is saved with the scene and Fit To View frames
// for it. The view never changes it to match its own shape; it fits the camera's frame inside
// the widget, and more of the scene shows at the sides or above and below.
//
// It needs OpenGL 3.3; without it the widget shows a message naming the problem (a label over
// the view), and the rest of the window goes on working. Use it on the GUI thread.
class VANTREL_DESKTOP_EXPORT SceneView : public QOpenGLWidget
{
    Q_OBJECT

public:
    // Left drag turns the camera round its target by this much per pixel (yaw across, pitch up
    // and down).
    static constexpr float OrbitDegreesPerPixel = 0.4f;
    // One wheel step (120 eighths of a degree) forward divides the camera's distance by this;
    // one step back multiplies it.
    static constexpr float ZoomFactorPerStep = 1.15f;
    // A press and release closer than this (Manhattan length, pixels) is a click, not a drag.
    static constexpr int ClickTolerance = 4;
    // While the user moves the camera (an orbit or pan drag, or a wheel step less than
    // WheelSettleMilliseconds ago) the floor's shadows are softened with this many samples
    // instead of the pictures' full count, so that the view keeps up with the mouse. The edges
    // keep their width but show grain; the first frame after the gesture is drawn in full.
    static constexpr int GestureShadowSamples = 16;
    // Then, too, the frame is drawn at the widget's width and height divided by this and scaled
    // up: a large scene's frame is mostly the rasteriser's work per pixel.
    static constexpr int GestureScaleDown = 2;
    static constexpr int WheelSettleMilliseconds = 200;
    // Held while dragging the selection, it lifts or lowers the shapes instead of sliding them
    // across the floor. Not Ctrl or Shift, which a press already gives other meanings.
    static constexpr Qt::KeyboardModifier RaiseModifier = Qt::AltModifier;

    explicit SceneView(QWidget *parent = nullptr);
    ~SceneView() override;

    // The document shown, or none (null). The view keeps no hold on it: a document that is
    // deleted simply leaves the view empty.
    void setDocument(Document *document);
    Document *document() const { return m_document; }

    // The frontmost visible shape under a point of the widget, or null: a ray through that pixel
    // with the very view and projection the view draws with, tested against the shapes' world
    // bounding boxes first and then their triangles.
    BaseNode *nodeAt(const QPoint &widgetPosition) const;

    // The time the last paintGL took on the CPU, milliseconds (the GPU may still be drawing).
    double lastFrameMilliseconds() const { return m_lastFrameMilliseconds; }
    // The shadow samples per floor pixel the last drawn frame used: GestureShadowSamples while
    // the camera moves, the pictures' count otherwise (0 before the first frame with a scene).
    int lastShadowSamples() const { return m_lastShadowSamples; }
    // The pixels the last drawn frame was drawn at, before any scaling up.
    QSize lastDrawnSize() const { return m_lastDrawnSize; }
    // Whether the user is moving the camera or dragging shapes right now, so that frames are drawn
    // the fast way.
    bool isMovingCamera() const;
    // Why the view cannot draw, or empty when it can.
    QString errorMessage() const { return m_errorMessage; }

signals:
    // After every paintGL, for frame-rate figures.
    void frameDrawn();

protected:
    void initializeGL() override;
    void paintGL() override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    enum class Drag { None, Orbit, Pan, Move };

    void releaseResources();
    void showMessage();
    void clickAt(const QPoint &position, bool toggle);
    // Puts the dragged shapes back; the rest of the gesture, up to the release, does nothing.
    void cancelMove();
    void pan(const QPoint &from, const QPoint &to);
    // Binds the framebuffer for a frame drawn while the camera moves and returns its size, or
    // leaves the widget's bound and returns pixels when a smaller one cannot be had.
    QSize reducedTarget(const QSize &pixels);

    QPointer<Document> m_document;
    std::unique_ptr<render::SceneDrawer> m_drawer;
    QString m_errorMessage;
    QLabel *m_message = nullptr; // why the view cannot draw; a child, shown only then
    double m_lastFrameMilliseconds = 0.0;
    int m_lastShadowSamples = 0;
    QSize m_lastDrawnSize;
    // Where frames are drawn while the camera moves; made on the first such frame.
    std::unique_ptr<QOpenGLFramebufferObject> m_reducedTarget;
    // Runs from each wheel step: a wheel gives no release, so the zoom counts as going on until
    // it runs out, and then the view draws in full.
    QTimer *m_wheelSettle = nullptr;

    // The gesture of the button pressed: where it began, where it was last, and what it does
    // once it moved further than ClickTolerance.
    Qt::MouseButton m_button = Qt::NoButton;
    Drag m_drag = Drag::None;
    bool m_dragging = false;
    bool m_clickToggles = false; // Ctrl held at the press: the click adds or removes the shape
    QPoint m_pressPosition;
    QPoint m_lastPosition;
    float m_yawAtPress = 0.f;
    float m_pitchAtPress = 0.f;
    std::unique_ptr<NodeDrag> m_nodeDrag; // while the gesture moves the selection
};

} // namespace vantrel::host
