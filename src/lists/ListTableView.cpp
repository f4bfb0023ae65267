#include "lists/ListTableView.h"

#include "lists/ListTableViewDataSource.h"

#include <QScrollBar>

#include <algorithm>

ListTableView::ListTableView(QWidget* parent)
    : QAbstractScrollArea(parent)
{
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    verticalScrollBar()->setSingleStep(20);
}

void ListTableView::reloadData()
{
    const int count = m_dataSource ? std::max(0, m_dataSource->numberOfRowsInTableView(this)) : 0;
    m_rowOffsets.assign(size_t(count) + 1, 0);
    for (int row = 0; row < count; ++row)
        m_rowOffsets[size_t(row) + 1] = m_rowOffsets[size_t(row)] + m_dataSource->tableViewHeightOfRow(this, row);
    placeVisibleRows();
}

QList<QWidget*> ListTableView::visibleViews() const
{
    QList<QWidget*> views;
    for (const QPointer<QWidget>& view : m_visibleViews)
        if (view)
            views.append(view);
    return views;
}

void ListTableView::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    placeVisibleRows();
}

void ListTableView::scrollContentsBy(int, int)
{
    placeVisibleRows();
}

void ListTableView::placeVisibleRows()
{
    const int pageHeight = viewport()->height();
    const int contentHeight = m_rowOffsets.back();
    QScrollBar* bar = verticalScrollBar();
    {
        const QSignalBlocker blocker(bar);
        bar->setRange(0, std::max(0, contentHeight - pageHeight));
        bar->setPageStep(pageHeight);
    }
    const int top = bar->value();

    QList<QPointer<QWidget>> placed;
    if (m_dataSource && numberOfRows() > 0) {
        // The first row whose bottom lies below the top of the sight.
        auto first = std::upper_bound(m_rowOffsets.begin(), m_rowOffsets.end(), top);
        int row = std::max(0, int(first - m_rowOffsets.begin()) - 1);
        for (; row < numberOfRows() && m_rowOffsets[size_t(row)] < top + pageHeight; ++row) {
            QWidget* view = m_dataSource->tableViewViewForRow(this, row);
            if (!view)
                continue;
            if (view->parentWidget() != viewport())
                view->setParent(viewport());
            const int height = m_rowOffsets[size_t(row) + 1] - m_rowOffsets[size_t(row)];
            view->setGeometry(0, m_rowOffsets[size_t(row)] - top, viewport()->width(), height);
            view->show();
            placed.append(view);
        }
    }
    for (const QPointer<QWidget>& view : std::as_const(m_visibleViews))
        if (view && !placed.contains(view))
            view->hide();
    m_visibleViews = placed;
}
