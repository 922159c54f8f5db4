// Copyright (C) 2026 The vantrel-tools authors
// SPDX-License-Identifier: MIT
#include "hostapp/core/scene/shapegenerator.h"

#include "hostapp/core/scene/meshcache.h"
#include "hostapp/core/undo/change.h"

#include <QMetaProperty>

namespace vantrel::host {

namespace {

class ParameterChange final : public Change
{
public:
    ParameterChange(ShapeGenerator *generator, QByteArray name, QVariant before, QVariant after)
        : m_generator(generator)
        , m_name(std::move(name))
        , m_before(std::move(before))
        , m_after(std::move(after))
    {}
    void undo() override { m_generator->restoreValue(m_name, m_before); }
    void redo() override { m_generator->restoreValue(m_name, m_after); }

private:
    ShapeGenerator *m_generator;
    QByteArray m_name;
    QVariant m_before;
    QVariant m_after;
};

} // namespace

ShapeGenerator::ShapeGenerator(const char *typeId)
    : m_typeId(typeId)
{}

ShapeGenerator::~ShapeGenerator() = default;

MeshPtr ShapeGenerator::mesh() const
{
    if (!m_mesh) {
        if (meshFollowsParameters())
            m_mesh = MeshCache::instance().get(
                meshKey(m_typeId, metaObject()->className(), m_values), [this] { return build(); });
        else
            m_mesh = build();
    }
    return m_mesh;
}

QStringList ShapeGenerator::parameterNames() const
{
    QStringList names;
    const QMetaObject *meta = metaObject();
    for (int i = ShapeGenerator::staticMetaObject.propertyCount(); i < meta->propertyCount(); ++i) {
        if (meta->property(i).isStored(this))
            names.append(QString::fromLatin1(meta->property(i).name()));
    }
    return names;
}

QVariantMap ShapeGenerator::parameters() const
{
    QVariantMap result;
    const QMetaObject *meta = metaObject();
    for (int i = ShapeGenerator::staticMetaObject.propertyCount(); i < meta->propertyCount(); ++i) {
        const QMetaProperty property = meta->property(i);
        if (property.isStored(this))
            result.insert(QString::fromLatin1(property.name()), property.read(this));
    }
    return result;
}

std::unique_ptr<ShapeGenerator> ShapeGenerator::clone() const
{
    std::unique_ptr<ShapeGenerator> copy = create();
    copy->m_values = m_values;
    copy->m_mesh = mesh(); // shared until either side changes a parameter
    return copy;
}

void ShapeGenerator::restoreValue(const QByteArray &name, const QVariant &value)
{
    // Keep each parameter's own type (a float stays a float when a double arrives), so that a
    // later write of the same value compares equal and records nothing.
    QVariant typed = value;
    const auto existing = m_values.constFind(name);
    if (existing != m_values.constEnd() && existing->isValid()
        && typed.userType() != existing->userType())
        typed.convert(existing->userType());
    m_values.insert(name, typed);
    m_mesh.reset();
}

void ShapeGenerator::initValue(const char *name, const QVariant &value)
{
    m_values.insert(QByteArray(name), value);
}

QVariant ShapeGenerator::value(const char *name) const
{
    return m_values.value(QByteArray::fromRawData(name, int(qstrlen(name))));
}

void ShapeGenerator::setValue(const char *name, const QVariant &value)
{
    m_refusal.clear();
    const QByteArray key(name);
    const QVariant before = m_values.value(key);
    if (before == value)
        return;
    if (m_recorder)
        m_recorder->apply(std::make_unique<ParameterChange>(this, key, before, value));
    else
        restoreValue(key, value);
}

void ShapeGenerator::setMesh(MeshPtr mesh)
{
    m_mesh = std::move(mesh);
}

ShapeGenerator::ParameterRange ShapeGenerator::parameterRange(const QByteArray &) const
{
    return {};
}

float ShapeGenerator::limited(const char *name, float value) const
{
    const ParameterRange range = parameterRange(QByteArray(name));
    return float(qBound(range.minimum, double(value), range.maximum));
}

} // namespace vantrel::host
