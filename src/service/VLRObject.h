#pragma once

#include "service/VLRError.h"

#include <QList>
#include <QMetaType>
#include <QString>
#include <QVariant>

#include <memory>
#include <mutex>
#include <optional>
#include <vector>

class VLRObject;

namespace vlr {

// Stands in a change record for a value that became absent.
struct Null
{
    bool operator==(const Null&) const { return true; }
};

enum KeyValueObservingOptions : unsigned {
    KeyValueObservingOptionNone = 0,
    KeyValueObservingOptionNew = 0x01,
    KeyValueObservingOptionInitial = 0x04,
};

// What an observer is told with a change. The new value is there only for
// registrations that asked for it; an absent value is the Null placeholder.
struct KeyValueChange
{
    std::optional<QVariant> newValue;

    bool hasNewValue() const { return newValue.has_value(); }
    bool newValueIsNull() const;
};

} // namespace vlr

Q_DECLARE_METATYPE(vlr::Null)

using VLRObjectPtr = std::shared_ptr<VLRObject>;
using VLRObjectList = QList<VLRObjectPtr>;
Q_DECLARE_METATYPE(VLRObjectPtr)
Q_DECLARE_METATYPE(VLRObjectList)

class VLRKeyValueObserver
{
public:
    virtual ~VLRKeyValueObserver() = default;
    virtual void observeValueForKeyPath(const QString& keyPath, VLRObject* object, const vlr::KeyValueChange& change,
                                        void* context) = 0;
};

// The base of every record of the service library: property-change
// observation by key path. Delivery is synchronous, on the thread that made
// the change; a registration with the initial option is delivered at once,
// inside the call that registers it. Observers are told in the order in which
// they registered, and one removed during a delivery is not told any more.
//
// Each record names its observable key paths once, in its nested Key. Its
// setters are protected: the client only reads records, while the service
// library and the test double change them through subclasses of their own
// that make the setters public.
class VLRObject : public std::enable_shared_from_this<VLRObject>
{
public:
    VLRObject() = default;
    VLRObject(const VLRObject&) = delete;
    VLRObject& operator=(const VLRObject&) = delete;
    virtual ~VLRObject() = default;

    virtual void addObserver(VLRKeyValueObserver* observer, const QString& keyPath, unsigned options, void* context);
    // Removes the one registration of this observer, key path and token.
    virtual void removeObserver(VLRKeyValueObserver* observer, const QString& keyPath, void* context);

    // The current value of an observed property, boxed; absent values are the
    // Null placeholder. Invalid for a key that is not observable.
    virtual QVariant valueForKey(const QString& key) const;

    // How many registrations are alive, for all keys or for one.
    int observationCount() const;
    int observationCount(const QString& keyPath) const;

protected:
    // Tells the observers of the key that its value changed.
    void didChangeValueForKey(QLatin1StringView key);

    template <typename T, typename V> void changeValue(T& field, V&& value, QLatin1StringView key)
    {
        field = std::forward<V>(value);
        didChangeValueForKey(key);
    }

private:
    struct Registration
    {
        quint64 id;
        VLRKeyValueObserver* observer;
        QString keyPath;
        unsigned options;
        void* context;
    };

    void deliver(const Registration& registration, const std::optional<QVariant>& value);
    bool isRegistered(quint64 id) const;

    mutable std::mutex m_mutex;
    std::vector<Registration> m_registrations;
    quint64 m_nextId = 1;
};

namespace vlr {

// Boxing of property values for change records and valueForKey.
QVariant boxed(bool value);
QVariant boxed(qint64 value);
QVariant boxed(int value);
QVariant boxed(double value);
QVariant boxed(const QString& value);
QVariant boxed(const QDateTime& value);
QVariant boxed(const QUrl& value);
QVariant boxed(const QImage& value);
QVariant boxed(const OptionalError& value);

template <typename T> QVariant boxed(const std::shared_ptr<T>& value)
{
    return value ? QVariant::fromValue(VLRObjectPtr(value)) : QVariant::fromValue(Null{});
}

template <typename T> QVariant boxed(const QList<std::shared_ptr<T>>& value)
{
    VLRObjectList list;
    list.reserve(value.size());
    for (const auto& element : value)
        list.append(element);
    return QVariant::fromValue(list);
}

} // namespace vlr
