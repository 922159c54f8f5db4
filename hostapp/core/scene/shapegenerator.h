// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/hostexport.h"
#include "host/iserializable.h"
#include "hostapp/core/scene/artworksheet.h"
#include "hostapp/core/scene/mesh.h"

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>

namespace vantrel::host {

class ChangeRecorder;

// The base of every shape generator: a QObject whose Qt properties (declared by the generator
// classes) are the shape's parameters, and which builds the shape's mesh from them.
//
// Generator classes declare each parameter as a Q_PROPERTY whose READ accessor returns
// value("name") and whose WRITE accessor limits the value and passes it to setValue("name", v).
// So QObject::setProperty, scripts, scene files and the tools all go through the same limits.
// A property whose STORED says false for this generator is none of its parameters.
// A parameter write is recorded in the owning document's undo history, and the mesh is rebuilt
// (lazily, on the next mesh() call) for this generator only: clones keep sharing the old one.
// Generators whose build() reads nothing but the identifier and the parameter values say so
// (meshFollowsParameters), and then share one mesh with every generator of the same kind and
// values through the MeshCache.
class VANTREL_HOST_EXPORT ShapeGenerator : public QObject, public ISerializable
{
    Q_OBJECT
    Q_INTERFACES(ISerializable)

public:
    // What a parameter measures, so that a panel can label its value.
    enum class ParameterUnit {
        None,        // a plain factor or share
        Centimetres, // a length in scene units
        Degrees,     // an angle
        Code,        // a whole-number style code
        ModelFile    // the path of a model file
    };
    // The values a parameter takes: numbers outside minimum..maximum are limited to them by the
    // WRITE accessor, which reads the same description (parameterRange), so the limits the
    // panel shows are the ones every other writer meets. Text parameters have no range.
    struct ParameterRange
    {
        ParameterUnit unit = ParameterUnit::None;
        double minimum = 0.0;
        double maximum = 0.0;
    };

    ~ShapeGenerator() override;

    const char *GetTypeId() const override { return m_typeId.constData(); }

    // The shape's mesh, built from the current parameters. Call on the GUI thread.
    MeshPtr mesh() const;

    // Where the shape's artwork lands for the current parameters; the mesh's texture coordinates
    // are made from it. Empty for shapes whose coordinates come from elsewhere (a model file).
    virtual ArtworkSheet artworkSheet() const { return {}; }

    // The parameter names, in declaration order, and their current values.
    QStringList parameterNames() const;
    QVariantMap parameters() const;
    // The unit and limits of one of the parameters; a default description for other names.
    virtual ParameterRange parameterRange(const QByteArray &name) const;

    // A generator of the same identifier with the same parameters that shares the mesh.
    std::unique_ptr<ShapeGenerator> clone() const;

    // Parameter writes are recorded there from now on (null: applied without recording).
    void setRecorder(ChangeRecorder *recorder) { m_recorder = recorder; }

    // Writes a stored value without limits and without recording (undo and redo use it).
    void restoreValue(const QByteArray &name, const QVariant &value);

    // Why the latest parameter write left the value as it was, for the rare values that are
    // refused rather than limited (a model file that cannot be read); empty when it was taken.
    // Whoever writes a parameter on behalf of a user (scene files, scripts) reports it.
    const QString &refusal() const { return m_refusal; }

protected:
    explicit ShapeGenerator(const char *typeId);

    // For the generator classes: the constructor seeds every parameter with initValue; READ
    // accessors use value; WRITE accessors limit and call setValue.
    void initValue(const char *name, const QVariant &value);
    QVariant value(const char *name) const;
    void setValue(const char *name, const QVariant &value);
    // value limited to the parameter's range (parameterRange), for WRITE accessors.
    float limited(const char *name, float value) const;

    // Builds the mesh from the current values. Called on the GUI thread.
    virtual MeshPtr build() const = 0;
    // True when build() reads nothing but GetTypeId() and the values, so that its mesh may be
    // shared with every generator of the same class, identifier and values. Off unless a class
    // says so: a generator with other state of its own (a model read from a file) never shares.
    virtual bool meshFollowsParameters() const { return false; }
    // A fresh generator of the same class and identifier, values not yet copied.
    virtual std::unique_ptr<ShapeGenerator> create() const = 0;

    // Replaces the current mesh, for generators whose mesh does not come from build().
    void setMesh(MeshPtr mesh);
    // For WRITE accessors that refuse a value instead of calling setValue: says why, until the
    // next write.
    void refuse(const QString &problem) { m_refusal = problem; }

private:
    QByteArray m_typeId;
    QHash<QByteArray, QVariant> m_values;
    mutable MeshPtr m_mesh; // null until built, and after a parameter changed
    ChangeRecorder *m_recorder = nullptr;
    QString m_refusal;
};

} // namespace vantrel::host
