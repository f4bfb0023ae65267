#pragma once

#include "widgets/VLRLayoutConstraint.h"

#include <QList>
#include <QObject>

// The constraints that one view holds, in the order they were added, and the
// geometry they give their first items. The holder lays them out again
// whenever it is resized or shown, and after every change of the list.
class VLRLayoutConstraints : public QObject
{
    Q_OBJECT

public:
    // The view's own list, or nullptr while it has none.
    static VLRLayoutConstraints* constraintsOfView(const QWidget* view);
    // The view's own list, made on first use.
    static VLRLayoutConstraints* ensureConstraintsOfView(QWidget* view);

    const QList<VLRLayoutConstraint>& constraints() const { return m_constraints; }
    void addConstraint(const VLRLayoutConstraint& constraint);
    void removeConstraintAt(qsizetype index);
    // Removes every constraint that ties the view, first or second.
    void removeConstraintsWithItem(const QWidget* view);
    void removeAllConstraints();

    // Places every first item that takes its geometry from constraints.
    void layout();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit VLRLayoutConstraints(QWidget* holder);

    QWidget* m_holder;
    QList<VLRLayoutConstraint> m_constraints;
};
