#include "service/VLRObject.h"

#include "service/VLRError.h"

#include <QDateTime>
#include <QImage>
#include <QUrl>

#include <algorithm>

namespace vlr {

bool KeyValueChange::newValueIsNull() const
{
    return newValue && newValue->metaType() == QMetaType::fromType<Null>();
}

QVariant boxed(bool value)
{
    return QVariant(value);
}
QVariant boxed(qint64 value)
{
    return QVariant(value);
}
QVariant boxed(int value)
{
    return QVariant(value);
}
QVariant boxed(double value)
{
    return QVariant(value);
}

QVariant boxed(const QString& value)
{
    return value.isNull() ? QVariant::fromValue(Null{}) : QVariant(value);
}

QVariant boxed(const QDateTime& value)
{
    return value.isNull() ? QVariant::fromValue(Null{}) : QVariant(value);
}

QVariant boxed(const QUrl& value)
{
    return value.isEmpty() ? QVariant::fromValue(Null{}) : QVariant(value);
}

QVariant boxed(const QImage& value)
{
    return value.isNull() ? QVariant::fromValue(Null{}) : QVariant(value);
}

QVariant boxed(const std::optional<Error>& value)
{
    return value ? QVariant::fromValue(*value) : QVariant::fromValue(Null{});
}

} // namespace vlr

void VLRObject::addObserver(VLRKeyValueObserver* observer, const QString& keyPath, unsigned options, void* context)
{
    if (!observer)
        return;
    Registration registration;
    {
        std::lock_guard lock(m_mutex);
        registration = Registration{m_nextId++, observer, keyPath, options, context};
        m_registrations.push_back(registration);
    }
    if (options & vlr::KeyValueObservingOptionInitial) {
        std::optional<QVariant> value;
        if (options & vlr::KeyValueObservingOptionNew)
            value = valueForKey(keyPath);
        deliver(registration, value);
    }
}

void VLRObject::removeObserver(VLRKeyValueObserver* observer, const QString& keyPath, void* context)
{
    std::lock_guard lock(m_mutex);
    auto it = std::find_if(m_registrations.begin(), m_registrations.end(), [&](const Registration& r) {
        return r.observer == observer && r.keyPath == keyPath && r.context == context;
    });
    if (it != m_registrations.end())
        m_registrations.erase(it);
}

QVariant VLRObject::valueForKey(const QString&) const
{
    return {};
}

void VLRObject::didChangeValueForKey(QLatin1StringView key)
{
    std::vector<Registration> targets;
    {
        std::lock_guard lock(m_mutex);
        for (const Registration& r : m_registrations)
            if (r.keyPath == key)
                targets.push_back(r);
    }
    if (targets.empty())
        return;
    // An observer may drop the last reference to this object while it is told.
    const std::shared_ptr<VLRObject> keepAlive = weak_from_this().lock();
    std::optional<QVariant> value;
    bool valueRead = false;
    for (const Registration& r : targets) {
        if (!isRegistered(r.id))
            continue;
        std::optional<QVariant> given;
        if (r.options & vlr::KeyValueObservingOptionNew) {
            if (!valueRead) {
                value = valueForKey(QString(key));
                valueRead = true;
            }
            given = value;
        }
        deliver(r, given);
    }
}

void VLRObject::deliver(const Registration& registration, const std::optional<QVariant>& value)
{
    registration.observer->observeValueForKeyPath(registration.keyPath, this, vlr::KeyValueChange{value},
                                                  registration.context);
}

bool VLRObject::isRegistered(quint64 id) const
{
    std::lock_guard lock(m_mutex);
    return std::any_of(m_registrations.begin(), m_registrations.end(),
                       [id](const Registration& r) { return r.id == id; });
}

int VLRObject::observationCount() const
{
    std::lock_guard lock(m_mutex);
    return int(m_registrations.size());
}

int VLRObject::observationCount(const QString& keyPath) const
{
    std::lock_guard lock(m_mutex);
    return int(std::count_if(m_registrations.begin(), m_registrations.end(),
                             [&](const Registration& r) { return r.keyPath == keyPath; }));
}
