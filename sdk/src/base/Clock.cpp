#include "sdk/base/Clock.h"

#include <QUuid>

QString Clock::newIdentifier()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces);
}
