#include <QApplication>
#include <gmock/gmock.h>

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", qgetenv("QT_QPA_PLATFORM").isEmpty() ? "offscreen" : qgetenv("QT_QPA_PLATFORM"));
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Veluria"));
    QApplication::setApplicationName(QStringLiteral("VeluriaTests"));
    ::testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
