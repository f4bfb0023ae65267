#pragma once

#include "service/VLRError.h"
#include "service/VLRObject.h"

#include <QUrl>

// One upload or download. "fractionCompleted", "finished", "paused" and
// "error" are observable.
class VLRTransferReporting : public VLRObject
{
public:
    // The key paths of the observable properties.
    struct Key
    {
        static constexpr QLatin1StringView fractionCompleted{"fractionCompleted"};
        static constexpr QLatin1StringView finished{"finished"};
        static constexpr QLatin1StringView paused{"paused"};
        static constexpr QLatin1StringView error{"error"};
    };

    static constexpr qint64 UploadType = 1;
    static constexpr qint64 RequestedDownloadSubType = 1;
    static constexpr qint64 AutoRevisionSubType = 2;

    const QString& identifier() const { return m_identifier; }
    qint64 type() const { return m_type; }
    qint64 subType() const { return m_subType; }
    const QUrl& fileURL() const { return m_fileURL; }
    qint64 totalSize() const { return m_totalSize; }
    double fractionCompleted() const { return m_fractionCompleted; }
    bool isFinished() const { return m_finished; }
    bool isPaused() const { return m_paused; }
    const vlr::OptionalError& error() const { return m_error; }

    virtual void pause() = 0;
    virtual void unpause() = 0;
    // Ends the transfer with the user-cancelled error.
    virtual void cancel() = 0;

    QVariant valueForKey(const QString& key) const override;

protected:
    // Changed by the service library and the test double alone; their
    // subclasses publish these.
    void setIdentifier(const QString& value) { m_identifier = value; }
    void setType(qint64 value) { m_type = value; }
    void setSubType(qint64 value) { m_subType = value; }
    void setFileURL(const QUrl& value) { m_fileURL = value; }
    void setTotalSize(qint64 value) { m_totalSize = value; }
    void setFractionCompleted(double value) { changeValue(m_fractionCompleted, value, Key::fractionCompleted); }
    void setFinished(bool value) { changeValue(m_finished, value, Key::finished); }
    void setPaused(bool value) { changeValue(m_paused, value, Key::paused); }
    void setError(const vlr::OptionalError& value) { changeValue(m_error, value, Key::error); }

private:
    QString m_identifier;
    qint64 m_type = 0;
    qint64 m_subType = 0;
    QUrl m_fileURL;
    qint64 m_totalSize = 0;
    double m_fractionCompleted = 0;
    bool m_finished = false;
    bool m_paused = false;
    vlr::OptionalError m_error;
};
