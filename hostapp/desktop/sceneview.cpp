// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/desktop/sceneview.h"

#include "geometry/geometry.h"
#include "hostapp/core/document/document.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/desktop/nodedrag.h"
#include "hostapp/desktop/scenepick.h"
#include "hostapp/desktop/viewnudge.h"
#include "hostapp/desktop/viewray.h"
#include "hostapp/render/drawlist.h"
#include "hostapp/render/framing.h"
#include "hostapp/render/scenedrawer.h"

#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QOpenGLContext>
#include <QOpenGLExtraFunctions>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QPainter>
#include <QTimer>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace vantrel::host {

SceneView::SceneView(QWidget *parent)
    : QOpenGLWidget(parent)
{
    QSurfaceFormat format = QSurfaceFormat::defaultFormat();
    format.setRenderableType(QSurfaceFormat::OpenGL);
    format.setVersion(3, 3);
    format.setProfile(QSurfaceFormat::CoreProfile);
    format.setDepthBufferSize(24);
    // No multisampling, unlike the pictures: the view is for moving round the scene, and on a
    // software rasteriser 4x multisampling makes a large scene's frames two to three times as
    // slow (bench_view). The finished shot is judged on `vantrel render`'s smooth edges.
    format.setSamples(0);
    setFormat(format);
    // The main window's shortcuts (Undo, Delete, the tools) must keep working while the view
    // has the focus, and a click into the view should give it the focus.
    setFocusPolicy(Qt::StrongFocus);
    setMinimumSize(64, 48);
    m_wheelSettle = new QTimer(this);
    m_wheelSettle->setSingleShot(true);
    m_wheelSettle->setInterval(WheelSettleMilliseconds);
    connect(m_wheelSettle, &QTimer::timeout, this, qOverload<>(&SceneView::update));
}

SceneView::~SceneView()
{
    // The context goes in QOpenGLWidget's destructor, when this object is no SceneView any more:
    // its last signal must not reach this class's slot.
    if (context())
        disconnect(context(), nullptr, this, nullptr);
    releaseResources();
}

void SceneView::setDocument(Document *document)
{
    if (m_document == document)
        return;
    m_nodeDrag.reset(); // a drag still going on puts the old document's shapes back
    if (m_document)
        disconnect(m_document, nullptr, this, nullptr);
    m_document = document;
    m_drag = Drag::None;
    m_dragging = false;
    m_button = Qt::NoButton;
    m_wheelSettle->stop();
    if (m_document) {
        // update() rather than repaint(): a burst of changes (a tool's preview, a drag) gives one
        // frame when the event loop next runs.
        connect(m_document, &Document::changed, this, qOverload<>(&SceneView::update));
        connect(m_document, &Document::cameraChanged, this, qOverload<>(&SceneView::update));
        connect(m_document, &QObject::destroyed, this, qOverload<>(&SceneView::update));
    }
    update();
}

void SceneView::initializeGL()
{
    // A widget moved to another window gets a new context: the old one's objects go first.
    connect(context(),
            &QOpenGLContext::aboutToBeDestroyed,
            this,
            &SceneView::releaseResources,
            Qt::UniqueConnection);
    m_errorMessage.clear();
    m_drawer = std::make_unique<render::SceneDrawer>();
    if (!m_drawer->initialize(&m_errorMessage)) {
        m_drawer.reset();
        // Not now: this may run inside a paint event, which must not create widgets.
        QMetaObject::invokeMethod(this, &SceneView::showMessage, Qt::QueuedConnection);
    }
}

void SceneView::releaseResources()
{
    if (!m_drawer)
        return;
    // The drawer's programs and buffers belong to this widget's context: free them while it is
    // current.
    makeCurrent();
    m_drawer->releaseResources();
    m_drawer.reset();
    m_reducedTarget.reset();
    doneCurrent();
}

void SceneView::paintGL()
{
    QElapsedTimer timer;
    timer.start();
    // The pictures' background, where nothing could be drawn.
    auto clearToBackground = [this] {
        const QColor background = render::DrawOptions().background;
        QOpenGLFunctions *gl = context()->functions();
        gl->glClearColor(
            float(background.redF()), float(background.greenF()), float(background.blueF()), 1.f);
        gl->glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    };
    if (!m_drawer) {
        clearToBackground(); // behind the message label, while OpenGL still clears at all
    } else {
        const qreal ratio = devicePixelRatioF();
        const QSize pixels(std::max(1, int(std::lround(width() * ratio))),
                           std::max(1, int(std::lround(height() * ratio))));
        QString error;
        bool drawn = false;
        if (m_document) {
            render::DrawOptions options;
            options.highlightSelection = true;
            QSize drawnSize = pixels;
            if (isMovingCamera()) {
                options.shadowSamples = GestureShadowSamples;
                drawnSize = reducedTarget(pixels);
            }
            // The picture's aspect is the widget's own: the camera's frame is fitted inside it.
            drawn = m_drawer->draw(render::collectDrawList(*m_document),
                                   *m_document->camera(),
                                   drawnSize,
                                   options,
                                   &error);
            if (drawnSize != pixels) {
                // Scaled up into the widget's own buffer, smoothly: a moving picture hides it.
                QOpenGLExtraFunctions *gl = context()->extraFunctions();
                gl->glBindFramebuffer(GL_READ_FRAMEBUFFER, m_reducedTarget->handle());
                gl->glBindFramebuffer(GL_DRAW_FRAMEBUFFER, defaultFramebufferObject());
                if (drawn)
                    gl->glBlitFramebuffer(0,
                                          0,
                                          drawnSize.width(),
                                          drawnSize.height(),
                                          0,
                                          0,
                                          pixels.width(),
                                          pixels.height(),
                                          GL_COLOR_BUFFER_BIT,
                                          GL_LINEAR);
                gl->glBindFramebuffer(GL_FRAMEBUFFER, defaultFramebufferObject());
            }
            if (drawn) {
                m_lastShadowSamples = options.shadowSamples;
                m_lastDrawnSize = drawnSize;
            }
            if (drawn && m_nodeDrag && m_dragging) { // where the dragged shapes will land
                QPainter painter(this);
                m_nodeDrag->selection().paintLanding(painter, *m_document->camera(), size());
            }
        }
        if (!drawn) {
            clearToBackground();
            if (!error.isEmpty())
                m_errorMessage = error;
        }
    }
    m_lastFrameMilliseconds = double(timer.nsecsElapsed()) / 1e6;
    emit frameDrawn();
}

QSize SceneView::reducedTarget(const QSize &pixels)
{
    const QSize reduced((pixels.width() + 1) / GestureScaleDown,
                        (pixels.height() + 1) / GestureScaleDown);
    if (reduced.width() < 16 || reduced.height() < 16)
        return pixels; // too small to gain anything
    if (!m_reducedTarget || m_reducedTarget->size() != reduced) {
        m_reducedTarget
            = std::make_unique<QOpenGLFramebufferObject>(reduced, QOpenGLFramebufferObject::Depth);
        if (!m_reducedTarget->isValid()) {
            m_reducedTarget.reset();
            return pixels; // the driver refuses: full size, only slower
        }
    }
    m_reducedTarget->bind();
    return reduced;
}

bool SceneView::isMovingCamera() const
{
    return m_dragging || m_wheelSettle->isActive();
}

void SceneView::showMessage()
{
    // A label over the view rather than text painted through OpenGL: a context too old for the
    // shaders may be too old for Qt's OpenGL painter as well, while the label is painted by the
    // window like any other widget.
    if (!m_message) {
        m_message = new QLabel(this);
        m_message->setAlignment(Qt::AlignCenter);
        m_message->setWordWrap(true);
        m_message->setMargin(16);
        m_message->setAutoFillBackground(true);
        m_message->setObjectName(QStringLiteral("sceneViewMessage"));
    }
    m_message->setText(tr("The 3D view cannot draw the scene:\n%1").arg(m_errorMessage));
    m_message->setGeometry(rect());
    m_message->setVisible(!m_errorMessage.isEmpty());
}

void SceneView::resizeEvent(QResizeEvent *event)
{
    QOpenGLWidget::resizeEvent(event);
    if (m_message)
        m_message->setGeometry(rect());
}

BaseNode *SceneView::nodeAt(const QPoint &widgetPosition) const
{
    return m_document ? pickAt(*m_document, size(), QPointF(widgetPosition)) : nullptr;
}

void SceneView::mousePressEvent(QMouseEvent *event)
{
    if (m_nodeDrag && event->button() == Qt::RightButton) {
        cancelMove(); // a right click during the drag, as Esc
        event->accept();
        return;
    }
    if (!m_document || m_button != Qt::NoButton) {
        event->ignore();
        return;
    }
    m_button = event->button();
    m_pressPosition = m_lastPosition = event->pos();
    m_dragging = false;
    m_yawAtPress = m_document->camera()->yaw();
    m_pitchAtPress = m_document->camera()->pitch();
    if (m_button == Qt::MiddleButton
        || (m_button == Qt::LeftButton && event->modifiers().testFlag(Qt::ShiftModifier)))
        m_drag = Drag::Pan;
    else if (m_button == Qt::LeftButton) {
        if (!m_document->GetSelection().empty())
            m_nodeDrag = NodeDrag::grab(
                *m_document, size(), event->pos(), event->modifiers().testFlag(RaiseModifier));
        m_drag = m_nodeDrag ? Drag::Move : Drag::Orbit;
    } else
        m_drag = Drag::None;
    m_clickToggles = event->modifiers().testFlag(Qt::ControlModifier);
    event->accept();
}

void SceneView::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_document || m_drag == Drag::None)
        return;
    if (!m_dragging && (event->pos() - m_pressPosition).manhattanLength() < ClickTolerance)
        return;
    m_dragging = true;
    Camera &camera = *m_document->camera();
    if (m_drag == Drag::Move) {
        m_nodeDrag->follow(event->pos(), event->modifiers().testFlag(RaiseModifier));
    } else if (m_drag == Drag::Orbit) {
        // From the press, not the last move: the camera's pitch limit cannot make the drag drift.
        const QPoint moved = event->pos() - m_pressPosition;
        // Dragging right turns the scene towards the right (the camera round the other way);
        // dragging down tips its top towards the viewer (the camera rises).
        camera.setYaw(m_yawAtPress - float(moved.x()) * OrbitDegreesPerPixel);
        camera.setPitch(m_pitchAtPress + float(moved.y()) * OrbitDegreesPerPixel);
    } else {
        pan(m_lastPosition, event->pos());
    }
    m_lastPosition = event->pos();
}

void SceneView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != m_button)
        return;
    const bool click = !m_dragging && m_button == Qt::LeftButton && m_drag != Drag::None
                       && (event->pos() - m_pressPosition).manhattanLength() < ClickTolerance;
    const bool wasMovingCamera = isMovingCamera();
    if (m_nodeDrag)
        m_nodeDrag->finish();
    m_nodeDrag.reset();
    m_button = Qt::NoButton;
    m_drag = Drag::None;
    m_dragging = false;
    if (click && m_document)
        clickAt(m_pressPosition, m_clickToggles);
    // The camera stays where the last move left it, but the frame showing it was a fast one.
    if (wasMovingCamera && !isMovingCamera())
        update();
}

void SceneView::wheelEvent(QWheelEvent *event)
{
    if (!m_document || event->angleDelta().y() == 0) {
        event->ignore();
        return;
    }
    const float steps = float(event->angleDelta().y()) / 120.f; // 120: one step of a common wheel
    m_wheelSettle->start(); // before the camera moves: the frame it asks for is a fast one
    Camera &camera = *m_document->camera();
    camera.SetDistance(camera.GetDistance() * std::pow(ZoomFactorPerStep, -steps));
    event->accept();
}

void SceneView::keyPressEvent(QKeyEvent *event)
{
    if (m_nodeDrag && event->key() == Qt::Key_Escape)
        cancelMove();
    else if (!m_document || m_nodeDrag
             || !nudgeSelection(*m_document, event->key(), event->modifiers()))
        QOpenGLWidget::keyPressEvent(event);
}

void SceneView::focusOutEvent(QFocusEvent *event)
{
    // A window that takes the focus mid-drag (a tool's, a message) takes the mouse too, and the
    // release would never come to close the drag's step.
    if (m_nodeDrag)
        cancelMove();
    QOpenGLWidget::focusOutEvent(event);
}

void SceneView::cancelMove()
{
    m_nodeDrag.reset(); // cancels its step
    m_drag = Drag::None;
    m_dragging = false;
    update(); // the last frame was a fast one, with the landing marks
}

void SceneView::pan(const QPoint &from, const QPoint &to)
{
    Camera &camera = *m_document->camera();
    const Vector3 target = camera.GetTarget();
    // The depth range only changes how depth is stored, not where a point shows: a box round
    // the target keeps the arithmetic well conditioned at any distance.
    TBBox<float> aroundTarget;
    ExtendBox(aroundTarget, target);
    const render::CameraView view
        = render::cameraView(camera, aroundTarget, float(width()) / float(height()));
    Matrix viewProjection;
    MultiplyMatrices(viewProjection, view.view, view.projection);
    Vector4 clip(target.x, target.y, target.z, 1.f);
    TransformVector4(clip, viewProjection);
    const float depth = clip.z / clip.w;
    const Matrix inverse = inverseViewProjection(view.view, view.projection);
    // The scene point under the cursor at the target's depth stays under the cursor: the target
    // moves against the cursor's motion by the world distance it covers at that depth.
    const Vector3 a = unproject(inverse, toDevice(QPointF(from), size()), depth);
    const Vector3 b = unproject(inverse, toDevice(QPointF(to), size()), depth);
    camera.SetTarget(Vector3(target.x + a.x - b.x, target.y + a.y - b.y, target.z + a.z - b.z));
}

void SceneView::clickAt(const QPoint &position, bool toggle)
{
    BaseNode *node = nodeAt(position);
    const std::vector<INode *> &selection = m_document->GetSelection();
    const bool selected
        = node && std::find(selection.begin(), selection.end(), node) != selection.end();
    int mode = Document::ReplaceSelection;
    std::vector<INode *> nodes;
    if (toggle) {
        if (!node)
            return; // Ctrl + click on empty space keeps the selection
        mode = selected ? Document::RemoveFromSelection : Document::AddToSelection;
        nodes.push_back(node);
    } else {
        if (node)
            nodes.push_back(node);
        if (node ? (selected && selection.size() == 1) : selection.empty())
            return; // nothing would change, and the step's name must not linger for the next
    }
    m_document->history().setNextStepName(tr("Select"));
    m_document->SetSelection(nodes, mode);
}

} // namespace vantrel::host
