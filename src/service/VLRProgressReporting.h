#pragma once

#include "service/VLRError.h"
#include "service/VLRObject.h"

// Progress of a long piece of work: "fractionCompleted", "finished" and
// "error" are observable.
class VLRProgressReporting : public VLRObject
{
public:
    // The key paths of the observable properties.
    struct Key
    {
        static constexpr QLatin1StringView fractionCompleted{"fractionCompleted"};
        static constexpr QLatin1StringView finished{"finished"};
        static constexpr QLatin1StringView error{"error"};
    };

    double fractionCompleted() const { return m_fractionCompleted; }
    bool isFinished() const { return m_finished; }
    const vlr::OptionalError& error() const { return m_error; }

    QVariant valueForKey(const QString& key) const override;

protected:
    // Changed by the service library and the test double alone; their
    // subclasses publish these.
    void setFractionCompleted(double value) { changeValue(m_fractionCompleted, value, Key::fractionCompleted); }
    void setFinished(bool value) { changeValue(m_finished, value, Key::finished); }
    void setError(const vlr::OptionalError& value) { changeValue(m_error, value, Key::error); }

private:
    double m_fractionCompleted = 0;
    bool m_finished = false;
    vlr::OptionalError m_error;
};
