// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/desktop/noderows.h"

#include "hostapp/core/files/scenefile.h"
#include "hostapp/core/scene/lightnode.h"
#include "hostapp/core/scene/meshnode.h"
#include "hostapp/core/scene/shapegenerator.h"
#include "hostapp/ui/propertieslistbuilder.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace vantrel::host {

namespace {

constexpr char LimitMin[] = "limitMin";
constexpr char LimitMax[] = "limitMax";
constexpr char LimitLength[] = "limitLength";
constexpr char Caption[] = "caption";
constexpr char Unit[] = "unit";
constexpr char ParamPrefix[] = "param.";
constexpr double SliderLength = 100.0; // cm, the end of a length slider

QString tr(const char *text)
{
    return QCoreApplication::translate("NodeRows", text);
}

// "coverAngle" -> "Cover Angle".
QString captionOf(const QString &name)
{
    QString caption;
    for (const QChar c : name) {
        if (c.isUpper() && !caption.isEmpty())
            caption += QLatin1Char(' ');
        caption += caption.isEmpty() ? c.toUpper() : c;
    }
    return caption;
}

// Appends a row to the builder's rows and adds what a typed value is checked against.
void addSlider(QList<QVariantMap> &rows,
               const QString &caption,
               const QString &unit,
               const QString &key,
               double sliderMin,
               double sliderMax,
               double limitMin,
               double limitMax,
               int flags,
               int decimals)
{
    PropertiesListBuilder builder{QString()};
    const QString label = unit.isEmpty() || unit == QStringLiteral("\u00b0")
                              ? caption
                              : QStringLiteral("%1 (%2)").arg(caption, unit);
    builder.AddSlider(label, key, float(sliderMin), float(sliderMax), flags, decimals);
    QVariantMap row = builder.GetList().constLast();
    row.insert(QLatin1String(Caption), caption);
    row.insert(QLatin1String(Unit), unit);
    row.insert(QLatin1String(LimitMin), limitMin);
    row.insert(QLatin1String(LimitMax), limitMax);
    rows.append(row);
}

void addText(QList<QVariantMap> &rows,
             const QString &caption,
             const QString &key,
             int limitLength,
             const QString &filter)
{
    PropertiesListBuilder builder{QString()};
    if (filter.isEmpty())
        builder.AddLineEdit(caption, key);
    else
        builder.AddFileChooser(caption, key, filter);
    QVariantMap row = builder.GetList().constLast();
    row.insert(QLatin1String(Caption), caption);
    row.insert(QLatin1String(LimitLength), limitLength);
    rows.append(row);
}

void addGroup(QList<QVariantMap> &rows, const QString &caption)
{
    PropertiesListBuilder builder{QString()};
    builder.AddPanel(caption);
    rows.append(builder.GetList().constLast());
}

void addPlacement(QList<QVariantMap> &rows)
{
    // The sliders cover what a table-top arrangement needs; a typed value may go to the limits a
    // scene file holds.
    struct Transform
    {
        QString caption;
        QString unit;
        const char *key;
        double sliderMin, sliderMax, limit;
        int flags, decimals;
    };
    const Transform transforms[] = {
        {tr("Position"), tr("cm"), "position.", -500, 500, SceneFile::MaximumPosition, 0, 1},
        {tr("Rotation"),
         QStringLiteral("\u00b0"),
         "rotation.",
         -180,
         180,
         SceneFile::MaximumRotation,
         PropertiesListBuilder::Degrees,
         1},
        {tr("Scale"), tr("\u00d7"), "scale.", 0.01, 10, SceneFile::MaximumScale, 0, 3},
    };
    addGroup(rows, tr("Placement"));
    for (const Transform &transform : transforms) {
        for (const char *axis : {"x", "y", "z"}) {
            addSlider(
                rows,
                QStringLiteral("%1 %2").arg(transform.caption, QString::fromLatin1(axis).toUpper()),
                transform.unit,
                QLatin1String(transform.key) + QLatin1String(axis),
                transform.sliderMin,
                transform.sliderMax,
                -transform.limit,
                transform.limit,
                transform.flags,
                transform.decimals);
        }
    }
}

void addShape(QList<QVariantMap> &rows, const ShapeGenerator &generator)
{
    addGroup(rows, tr("Shape"));
    for (const QString &name : generator.parameterNames()) {
        const QString key = QLatin1String(ParamPrefix) + name;
        const ShapeGenerator::ParameterRange range = generator.parameterRange(name.toLatin1());
        const QVariant value = generator.property(name.toLatin1().constData());
        const QString caption = captionOf(name);
        using Kind = ShapeGenerator::ParameterUnit;
        if (range.unit == Kind::ModelFile) {
            addText(rows,
                    tr("Model File"),
                    key,
                    SceneFile::MaximumTextLength,
                    tr("Models (*.obj *.stl *.ply *.gltf *.glb *.fbx *.3ds *.dae *.off);;"
                       "All files (*)"));
        } else if (value.userType() == QMetaType::QString) {
            addText(rows, caption, key, SceneFile::MaximumTextLength, QString());
        } else if (range.unit == Kind::Centimetres) {
            // The slider spans the sizes of packages and books; a typed length may go on to
            // the generator's own limit.
            addSlider(rows,
                      caption,
                      tr("cm"),
                      key,
                      range.minimum,
                      std::min(range.maximum, SliderLength),
                      range.minimum,
                      range.maximum,
                      0,
                      2);
        } else if (range.unit == Kind::Degrees) {
            addSlider(rows,
                      caption,
                      QStringLiteral("\u00b0"),
                      key,
                      range.minimum,
                      range.maximum,
                      range.minimum,
                      range.maximum,
                      PropertiesListBuilder::Degrees,
                      1);
        } else {
            // Codes (a paperback's type) move in whole numbers; plain numbers show two decimals.
            const bool code = range.unit == Kind::Code;
            addSlider(rows,
                      caption,
                      QString(),
                      key,
                      range.minimum,
                      range.maximum,
                      range.minimum,
                      range.maximum,
                      code ? int(PropertiesListBuilder::WholeNumbers) : 0,
                      code ? 0 : 2);
        }
    }
}

} // namespace

QList<QVariantMap> NodeRows::of(const BaseNode *node)
{
    QList<QVariantMap> rows;
    addGroup(rows, tr("Node"));
    addText(rows, tr("Name"), QStringLiteral("name"), SceneFile::MaximumNameLength, QString());
    PropertiesListBuilder visible{QString()};
    visible.AddCheckBox(
        tr("Visible"), QStringLiteral("visible"), PropertiesListBuilder::ControlFirst);
    rows.append(visible.GetList().constLast());
    rows.last().insert(QLatin1String(Caption), tr("Visibility"));
    if (!qobject_cast<const SceneNode *>(node))
        return rows;
    addPlacement(rows);
    if (const auto *mesh = qobject_cast<const MeshNode *>(node)) {
        addShape(rows, *mesh->generator());
        addGroup(rows, tr("Artwork"));
        addText(rows,
                tr("Image"),
                QStringLiteral("artwork"),
                SceneFile::MaximumArtworkPathLength,
                tr("Images (*.png *.jpg *.jpeg);;All files (*)"));
    } else if (qobject_cast<const LightNode *>(node)) {
        addGroup(rows, tr("Light"));
        addSlider(rows, tr("Intensity"), QString(), QStringLiteral("intensity"), 0, 2, 0, 10, 0, 2);
        addSlider(
            rows, tr("Shadow Blur"), QString(), QStringLiteral("shadowBlur"), 0, 1, 0, 1, 0, 2);
        PropertiesListBuilder shadows{QString()};
        shadows.AddCheckBox(tr("Casts shadows"),
                            QStringLiteral("castShadows"),
                            PropertiesListBuilder::ControlFirst);
        rows.append(shadows.GetList().constLast());
        rows.last().insert(QLatin1String(Caption), tr("Cast Shadows"));
    }
    return rows;
}

namespace {

// The transform a "position.x"-style key names, and which of its components; -1 when the key
// names none.
int axisOf(const QString &key, QString *transform)
{
    const int dot = key.indexOf(QLatin1Char('.'));
    if (dot < 0 || key.startsWith(QLatin1String(ParamPrefix)))
        return -1;
    *transform = key.left(dot);
    const QString axis = key.mid(dot + 1);
    return axis == QLatin1String("x")   ? 0
           : axis == QLatin1String("y") ? 1
           : axis == QLatin1String("z") ? 2
                                        : -1;
}

float &component(Vector3 &v, int axis)
{
    return axis == 0 ? v.x : axis == 1 ? v.y : v.z;
}

Vector3 transformOf(const SceneNode &node, const QString &transform)
{
    if (transform == QLatin1String("position"))
        return node.GetPosition();
    if (transform == QLatin1String("rotation"))
        return node.GetRotation();
    return node.GetScale();
}

} // namespace

QVariant NodeRows::read(const BaseNode *node, const QString &key)
{
    if (key == QLatin1String("name"))
        return node->GetName();
    if (key == QLatin1String("visible"))
        return node->IsVisible();
    QString transform;
    const int axis = axisOf(key, &transform);
    if (const auto *scene = qobject_cast<const SceneNode *>(node); scene && axis >= 0) {
        Vector3 value = transformOf(*scene, transform);
        return double(component(value, axis));
    }
    if (const auto *mesh = qobject_cast<const MeshNode *>(node)) {
        if (key == QLatin1String("artwork"))
            return mesh->artwork();
        if (key.startsWith(QLatin1String(ParamPrefix))) {
            const QByteArray name = key.mid(int(qstrlen(ParamPrefix))).toLatin1();
            const QVariant value = mesh->generator()->property(name.constData());
            return value.userType() == QMetaType::Float ? QVariant(value.toDouble()) : value;
        }
    }
    if (const auto *light = qobject_cast<const LightNode *>(node)) {
        if (key == QLatin1String("intensity"))
            return double(light->GetIntensity());
        if (key == QLatin1String("shadowBlur"))
            return double(light->GetShadowBlur());
        if (key == QLatin1String("castShadows"))
            return light->GetCastShadows();
    }
    return QVariant();
}

QString NodeRows::check(const QVariantMap &row, const QVariant &value)
{
    const QString caption = row.value(QLatin1String(Caption)).toString();
    if (row.contains(QLatin1String(LimitMin))) {
        const double minimum = row.value(QLatin1String(LimitMin)).toDouble();
        const double maximum = row.value(QLatin1String(LimitMax)).toDouble();
        bool ok = false;
        const double number = value.toDouble(&ok);
        if (ok && std::isfinite(number) && number >= minimum && number <= maximum)
            return QString();
        QString unit = row.value(QLatin1String(Unit)).toString();
        if (!unit.isEmpty() && unit != QStringLiteral("\u00b0"))
            unit.prepend(QLatin1Char(' '));
        return tr("%1 must be between %2 and %3%4")
            .arg(caption, QString::number(minimum), QString::number(maximum), unit);
    }
    if (row.contains(QLatin1String(LimitLength))) {
        const QString text = value.toString();
        const int limit = row.value(QLatin1String(LimitLength)).toInt();
        if (text.isEmpty()
            && row.value(QLatin1String(PanelRow::Kind)) == QLatin1String(PanelRow::File))
            return QString(); // no file: the shape shows none
        const QString problem = SceneFile::textProblem(text, limit);
        return problem.isEmpty() ? QString() : tr("%1: %2").arg(caption, problem);
    }
    return QString();
}

QString NodeRows::write(BaseNode *node, const QString &key, const QVariant &value)
{
    if (key == QLatin1String("name")) {
        node->SetName(value.toString());
        return QString();
    }
    if (key == QLatin1String("visible")) {
        node->SetVisible(value.toBool());
        return QString();
    }
    QString transform;
    const int axis = axisOf(key, &transform);
    if (auto *scene = qobject_cast<SceneNode *>(node); scene && axis >= 0) {
        Vector3 vector = transformOf(*scene, transform);
        component(vector, axis) = value.toFloat();
        if (transform == QLatin1String("position"))
            scene->SetPosition(vector, true);
        else if (transform == QLatin1String("rotation"))
            scene->SetRotation(vector, true);
        else
            scene->SetScale(vector, 0);
        return QString();
    }
    if (auto *mesh = qobject_cast<MeshNode *>(node)) {
        QString error;
        if (key == QLatin1String("artwork"))
            return mesh->setArtwork(value.toString(), &error) ? QString() : error;
        ShapeGenerator *generator = mesh->generator();
        const QByteArray name = key.mid(int(qstrlen(ParamPrefix))).toLatin1();
        QVariant typed = value;
        if (generator->property(name.constData()).userType() == QMetaType::Int)
            typed = int(std::lround(value.toDouble()));
        if (!generator->setProperty(name.constData(), typed))
            return tr("The shape has no parameter \"%1\"").arg(QString::fromLatin1(name));
        return generator->refusal();
    }
    if (auto *light = qobject_cast<LightNode *>(node)) {
        if (key == QLatin1String("intensity"))
            light->SetIntensity(value.toFloat());
        else if (key == QLatin1String("shadowBlur"))
            light->SetShadowBlur(value.toFloat());
        else if (key == QLatin1String("castShadows"))
            light->SetCastShadows(value.toBool());
    }
    return QString();
}

} // namespace vantrel::host
