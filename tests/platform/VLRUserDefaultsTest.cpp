#include "platform/VLRUserDefaults.h"
#include "service/VLRLogFormat.h"

#include <QByteArray>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimeZone>

#include <gtest/gtest.h>

namespace {

const QString environmentDomain = QStringLiteral("com.veluria-dev.Veluria2.UserDefaults");
const QString environmentKey = QStringLiteral("com.veluria-dev.Veluria.Environment");

class UserDefaultsTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(folder.isValid());
        VLRUserDefaults::setStorageDirectory(folder.filePath(QStringLiteral("Veluria")));
        VLRUserDefaults::resetStandardUserDefaults();
        vlr::setLogFilePath(QString());
        vlr::setLogObserver([this](int level, const QString& tag, const QString& message) {
            logLines << QStringLiteral("%1 %2 %3").arg(level).arg(tag, message);
        });
    }

    void TearDown() override
    {
        vlr::setLogObserver(nullptr);
        VLRUserDefaults::resetStandardUserDefaults();
        VLRUserDefaults::setStorageDirectory(QString());
    }

    static VLRUserDefaults* restarted()
    {
        VLRUserDefaults::resetStandardUserDefaults();
        return VLRUserDefaults::standardUserDefaults();
    }

    QString fileText(const QString& name) const
    {
        QFile file(folder.filePath(QStringLiteral("Veluria/") + name));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    QTemporaryDir folder;
    QStringList logLines;
};

TEST_F(UserDefaultsTest, EveryTypeComesBackAfterARestart)
{
    const QDateTime summer(QDate(2024, 5, 1), QTime(9, 30, 0, 250), QTimeZone(7200));
    const QDateTime local = QDateTime::currentDateTime();
    const QVariantMap values{
        {QStringLiteral("VLRUserDefaultsKeyShowNotifications"), true},
        {QStringLiteral("VLRUserDefaultsKeyLimitDownloadCacheSize"), false},
        {QStringLiteral("VLRUserDefaultsKeyFirstLaunchDate"), local},
        {QStringLiteral("VLRUserDefaultsKeyUpdatePostponedDate"), summer},
        {QStringLiteral("com.veluria.Veluria.Email"), QStringLiteral("ann@example.com")},
        {QStringLiteral("empty"), QStringLiteral("")},
        {QStringLiteral("looks like a tag"), QStringLiteral("bool:true")},
        {QStringLiteral("odd text"), QStringLiteral("@Variant(x), \"quoted\" = ; #\nnext line\tÜber 😀")},
        {QStringLiteral("number"), -42},
        {QStringLiteral("big number"), qlonglong(1) << 53},
        {QStringLiteral("fraction"), 0.1},
        {QStringLiteral("tiny"), 4.9e-324},
        {QStringLiteral("list"), QStringList{QStringLiteral("a, b"), QString()}},
        {QStringLiteral("dictionary"), QVariantMap{{QStringLiteral("when"), summer}, {QStringLiteral("on"), true}}},
        {QStringLiteral("bytes"), QByteArray("\0\xff", 2)},
        {QStringLiteral("group/key"), 7u},
    };
    VLRUserDefaults* defaults = VLRUserDefaults::standardUserDefaults();
    for (auto it = values.cbegin(); it != values.cend(); ++it)
        defaults->setObject(it.value(), it.key());

    defaults = restarted();
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        const QVariant value = defaults->objectForKey(it.key());
        EXPECT_EQ(value.metaType(), it.value().metaType()) << it.key().toStdString();
        EXPECT_EQ(value, it.value()) << it.key().toStdString();
    }
    EXPECT_FALSE(defaults->stringForKey(QStringLiteral("empty")).isNull());
    EXPECT_EQ(defaults->objectForKey(QStringLiteral("VLRUserDefaultsKeyFirstLaunchDate")).toDateTime().toMSecsSinceEpoch(),
              local.toMSecsSinceEpoch());

    // The file is plain text a person can read.
    const QString text = fileText(QStringLiteral("Veluria.conf"));
    EXPECT_TRUE(text.contains(QStringLiteral("VLRUserDefaultsKeyUpdatePostponedDate=date:2024-05-01T09:30:00.250+02:00\n")));
    EXPECT_TRUE(text.contains(QStringLiteral("VLRUserDefaultsKeyShowNotifications=bool:true\n")));
    EXPECT_TRUE(text.contains(QStringLiteral("com.veluria.Veluria.Email=string:ann@example.com\n")));
    EXPECT_TRUE(logLines.isEmpty()) << logLines.join(QLatin1Char('\n')).toStdString();
}

TEST_F(UserDefaultsTest, AnAbsentKeyIsNotAFalseOne)
{
    VLRUserDefaults* defaults = VLRUserDefaults::standardUserDefaults();
    EXPECT_FALSE(defaults->objectForKey(QStringLiteral("VLRUserDefaultsKeyLaunchRestProxy")).isValid());
    EXPECT_FALSE(defaults->boolForKey(QStringLiteral("VLRUserDefaultsKeyLaunchRestProxy")));
    EXPECT_TRUE(defaults->stringForKey(QStringLiteral("com.veluria.Veluria.Email")).isNull());

    defaults->setBool(false, QStringLiteral("VLRUserDefaultsKeyShowNotifications"));
    defaults->setBool(true, QStringLiteral("VLRUserDefaultsKeyAutoOpenAssets"));
    defaults->setObject(QStringLiteral("ann@example.com"), QStringLiteral("com.veluria.Veluria.Email"));
    defaults->setObject(3, QStringLiteral("count"));
    defaults = restarted();
    EXPECT_TRUE(defaults->objectForKey(QStringLiteral("VLRUserDefaultsKeyShowNotifications")).isValid());
    EXPECT_FALSE(defaults->boolForKey(QStringLiteral("VLRUserDefaultsKeyShowNotifications")));
    EXPECT_TRUE(defaults->boolForKey(QStringLiteral("VLRUserDefaultsKeyAutoOpenAssets")));
    EXPECT_TRUE(defaults->stringForKey(QStringLiteral("VLRUserDefaultsKeyAutoOpenAssets")).isNull());
    EXPECT_EQ(defaults->stringForKey(QStringLiteral("count")), QStringLiteral("3"));
    EXPECT_EQ(defaults->stringForKey(QStringLiteral("com.veluria.Veluria.Email")), QStringLiteral("ann@example.com"));

    defaults->removeObjectForKey(QStringLiteral("VLRUserDefaultsKeyShowNotifications"));
    defaults->setObject(QVariant(), QStringLiteral("com.veluria.Veluria.Email"));
    defaults = restarted();
    EXPECT_FALSE(defaults->objectForKey(QStringLiteral("VLRUserDefaultsKeyShowNotifications")).isValid());
    EXPECT_FALSE(defaults->objectForKey(QStringLiteral("com.veluria.Veluria.Email")).isValid());
    EXPECT_TRUE(defaults->boolForKey(QStringLiteral("VLRUserDefaultsKeyAutoOpenAssets")));
}

TEST_F(UserDefaultsTest, APersistentDomainKeepsTheKeysOfOthers)
{
    VLRUserDefaults* defaults = VLRUserDefaults::standardUserDefaults();
    EXPECT_EQ(defaults->persistentDomainForName(environmentDomain), std::nullopt);

    defaults->setPersistentDomain({{QStringLiteral("com.veluria-dev.Other"), QStringLiteral("kept")},
                                   {environmentKey, QStringLiteral("a.veluria.example")}},
                                  environmentDomain);
    defaults = restarted();
    std::optional<QVariantMap> domain = defaults->persistentDomainForName(environmentDomain);
    ASSERT_TRUE(domain.has_value());
    domain->insert(environmentKey, QStringLiteral("b.veluria.example"));
    defaults->setPersistentDomain(*domain, environmentDomain);

    defaults = restarted();
    EXPECT_EQ(defaults->persistentDomainForName(environmentDomain),
              (QVariantMap{{QStringLiteral("com.veluria-dev.Other"), QStringLiteral("kept")},
                           {environmentKey, QStringLiteral("b.veluria.example")}}));
    EXPECT_TRUE(fileText(environmentDomain + QStringLiteral(".conf")).contains(
        QStringLiteral("com.veluria-dev.Veluria.Environment=string:b.veluria.example")));
    // The domain isn't the standard one.
    EXPECT_FALSE(defaults->objectForKey(environmentKey).isValid());

    // An emptied domain still exists.
    defaults->setPersistentDomain({}, environmentDomain);
    EXPECT_EQ(restarted()->persistentDomainForName(environmentDomain), QVariantMap());

    // A name can't reach outside the folder.
    defaults = restarted();
    defaults->setPersistentDomain({{QStringLiteral("k"), 1}}, QStringLiteral("../Escaped"));
    EXPECT_EQ(defaults->persistentDomainForName(QStringLiteral("../Escaped")), std::nullopt);
    EXPECT_FALSE(QFile::exists(folder.filePath(QStringLiteral("Escaped.conf"))));
    EXPECT_EQ(logLines, QStringList{QStringLiteral("5 SDKClient User defaults: invalid persistent domain name \"../Escaped\"")});
}

TEST_F(UserDefaultsTest, SynchronizeReadsWhatAnotherProgramWrote)
{
    VLRUserDefaults* defaults = VLRUserDefaults::standardUserDefaults();
    defaults->setBool(true, QStringLiteral("VLRUserDefaultsKeyAutoOpenAssets"));
    {
        QSettings other(folder.filePath(QStringLiteral("Veluria/Veluria.conf")), QSettings::IniFormat);
        other.setValue(QStringLiteral("VLRUserDefaultsKeyLaunchRestProxy"), QStringLiteral("bool:true"));
        other.setValue(QStringLiteral("edited by hand"), QStringLiteral("plain"));
    }
    EXPECT_FALSE(defaults->objectForKey(QStringLiteral("VLRUserDefaultsKeyLaunchRestProxy")).isValid());
    EXPECT_TRUE(defaults->synchronize());
    EXPECT_TRUE(defaults->boolForKey(QStringLiteral("VLRUserDefaultsKeyLaunchRestProxy")));
    EXPECT_TRUE(defaults->boolForKey(QStringLiteral("VLRUserDefaultsKeyAutoOpenAssets")));
    EXPECT_EQ(defaults->objectForKey(QStringLiteral("edited by hand")), QVariant(QStringLiteral("plain")));
}

TEST_F(UserDefaultsTest, AnUnwritableFolderKeepsTheValuesForThisRun)
{
    // Not even root can make a folder inside a plain file.
    QFile blocker(folder.filePath(QStringLiteral("blocker")));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    const QString unwritable = folder.filePath(QStringLiteral("blocker/Veluria"));
    VLRUserDefaults::setStorageDirectory(unwritable);
    VLRUserDefaults* defaults = restarted();

    defaults->setBool(false, QStringLiteral("VLRUserDefaultsKeyShowNotifications"));
    defaults->setObject(QStringLiteral("ann@example.com"), QStringLiteral("com.veluria.Veluria.Email"));
    defaults->setPersistentDomain({{environmentKey, QStringLiteral("a.veluria.example")}}, environmentDomain);

    EXPECT_TRUE(defaults->objectForKey(QStringLiteral("VLRUserDefaultsKeyShowNotifications")).isValid());
    EXPECT_FALSE(defaults->boolForKey(QStringLiteral("VLRUserDefaultsKeyShowNotifications")));
    EXPECT_EQ(defaults->stringForKey(QStringLiteral("com.veluria.Veluria.Email")), QStringLiteral("ann@example.com"));
    EXPECT_EQ(defaults->persistentDomainForName(environmentDomain),
              (QVariantMap{{environmentKey, QStringLiteral("a.veluria.example")}}));
    EXPECT_FALSE(defaults->synchronize());
    const QString failure = QStringLiteral("5 SDKClient User defaults: cannot create the folder %1; the values are kept in memory for this run");
    EXPECT_EQ(logLines, (QStringList{failure.arg(unwritable), failure.arg(unwritable)}));

    defaults = restarted();
    EXPECT_FALSE(defaults->objectForKey(QStringLiteral("VLRUserDefaultsKeyShowNotifications")).isValid());
    EXPECT_EQ(defaults->persistentDomainForName(environmentDomain), std::nullopt);
}

} // namespace
