#include "PurchasePages.h"

#include "Database.h"
#include "HttpConnection.h"
#include "MarketCatalogue.h"
#include "RequestContext.h"
#include "WebReply.h"
#include "WebTemplate.h"

#include <QDate>
#include <QDateTime>
#include <QLocale>
#include <QSqlQuery>
#include <QVariant>

using namespace WebReply;

namespace {
bool marketplaceExists()
{
    QSqlQuery query(Database::connection());
    return query.exec(QStringLiteral("SELECT to_regclass('purchases') IS NOT NULL AND to_regclass('products') IS NOT "
                                     "NULL"))
        && query.next() && query.value(0).toBool();
}

// A day as the marketplace keeps it: a date, a time, or milliseconds since 1970.
QString dayText(const QVariant& value)
{
    if (value.isNull())
        return {};
    QDate date;
    if (value.metaType().id() == QMetaType::QDate)
        date = value.toDate();
    else if (value.metaType().id() == QMetaType::QDateTime)
        date = value.toDateTime().toUTC().date();
    else
        date = QDateTime::fromMSecsSinceEpoch(value.toLongLong(), Qt::UTC).date();
    return date.isValid() ? QLocale::c().toString(date, QStringLiteral("d MMMM yyyy")) : QString();
}
} // namespace

PurchasePages::PurchasePages(const WebSessions& sessions)
    : m_sessions(sessions)
{ }

bool PurchasePages::handle(HttpConnection* c, const QString& path)
{
    const QStringList parts = path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    if (parts.value(0) != QLatin1String("purchases") || parts.size() < 2 || parts.size() > 3)
        return false;
    const WebSessions::Session session = m_sessions.find(c->request());
    if (!session.isSignedIn()) {
        signInFirst(c, path);
        return true;
    }
    const QString purchaseId = RequestContext::uuidOf(parts[1]);
    const bool post = c->request().method == "POST";
    if (purchaseId.isEmpty() || !marketplaceExists())
        notFound(c, session);
    else if (parts.size() == 2 && !post)
        show(c, session, purchaseId);
    else if (parts.size() == 3 && post)
        change(c, session, purchaseId, parts[2]);
    else
        notFound(c, session);
    return true;
}

void PurchasePages::show(HttpConnection* c, const WebSessions::Session& session, const QString& purchaseId,
                         const QString& failure)
{
    QSqlQuery query(Database::connection());
    query.prepare(QStringLiteral("SELECT pr.name, p.renews_at, p.canceled, p.cc_expires_on FROM purchases p JOIN "
                                 "products pr ON pr.id = p.product_id WHERE p.id = ? AND p.user_id = ?"));
    query.addBindValue(purchaseId);
    query.addBindValue(session.userId);
    if (!query.exec() || !query.next())
        return notFound(c, session);
    const bool canceled = query.value(2).toBool();
    const QString renewal =
        canceled ? QStringLiteral("It ends on %1 and is not renewed.") : QStringLiteral("It renews on %1.");
    const QString card = dayText(query.value(3));
    const QString base = QStringLiteral("/purchases/") + purchaseId;
    page(c, failure.isEmpty() ? 200 : 422, session, query.value(0).toString(),
         WebTemplate(QStringLiteral("purchase"))
             .set(QStringLiteral("product"), query.value(0).toString())
             .set(QStringLiteral("renewal"), renewal.arg(dayText(query.value(1))))
             .set(QStringLiteral("card"),
                  card.isEmpty() ? QStringLiteral("No card is on file.")
                                 : QStringLiteral("The card on file expires on %1.").arg(card))
             .set(QStringLiteral("csrf"), session.csrf)
             .set(QStringLiteral("toggle"), base + (canceled ? QStringLiteral("/renew") : QStringLiteral("/cancel")))
             .set(QStringLiteral("toggleText"), canceled ? QStringLiteral("Renew") : QStringLiteral("Cancel renewal"))
             .set(QStringLiteral("cardAction"), base + QStringLiteral("/card"))
             .setHtml(QStringLiteral("failure"),
                      failure.isEmpty()
                          ? QString()
                          : WebTemplate(QStringLiteral("failure")).set(QStringLiteral("text"), failure).render())
             .render());
}

void PurchasePages::change(HttpConnection* c, const WebSessions::Session& session, const QString& purchaseId,
                           const QString& what)
{
    const QUrlQuery form = WebReply::form(c->request().body);
    if (!WebSessions::acceptsForm(session, form))
        return formRefused(c, session);
    QSqlQuery update(Database::connection());
    if (what == QLatin1String("cancel") || what == QLatin1String("renew")) {
        update.prepare(QStringLiteral("UPDATE purchases SET canceled = ? WHERE id = ? AND user_id = ?"));
        update.addBindValue(what == QLatin1String("cancel"));
    } else if (what == QLatin1String("card")) {
        // A card is good to the end of the month printed on it.
        const QDate month = QDate::fromString(field(form, QStringLiteral("expiry")), QStringLiteral("yyyy-MM"));
        if (!month.isValid() || month < QDate::currentDate().addDays(1 - QDate::currentDate().day()))
            return show(c, session, purchaseId,
                        QStringLiteral("Enter the month and year printed on the card, not in the past."));
        update.prepare(QStringLiteral("UPDATE purchases SET cc_expires_on = ? WHERE id = ? AND user_id = ?"));
        update.addBindValue(month.addMonths(1).addDays(-1));
    } else {
        return notFound(c, session);
    }
    update.addBindValue(purchaseId);
    update.addBindValue(session.userId);
    if (!update.exec() || update.numRowsAffected() != 1)
        return notFound(c, session);
    // The buyer's signed-in clients show the change (a card warning gone).
    MarketCatalogue::changedFor(session.userId);
    redirect(c, QStringLiteral("/purchases/") + purchaseId);
}
