#pragma once

#include "service/VLRError.h"
#include "service/VLRObject.h"

// Progress of a long piece of work: "fractionCompleted", "finished" and
// "error" are observable.
class VLRProgressReporting : public VLRObject
{
public:
    double fractionCompleted() const { return m_fractionCompleted; }
    bool isFinished() const { return m_finished; }
    const vlr::OptionalError& error() const { return m_error; }

    void setFractionCompleted(double value) { changeValue(m_fractionCompleted, value, "fractionCompleted"); }
    void setFinished(bool value) { changeValue(m_finished, value, "finished"); }
    void setError(const vlr::OptionalError& value) { changeValue(m_error, value, "error"); }

    QVariant valueForKey(const QString& key) const override;

private:
    double m_fractionCompleted = 0;
    bool m_finished = false;
    vlr::OptionalError m_error;
};
