#include "platform/VLRUserDefaults.h"
#include "support/CapturedLog.h"

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
    void SetUp() override { ASSERT_TRUE(folder.isValid()); }

    VLRUserDefaults* instance()
    {
        if (!current)
            current = std::make_unique<VLRUserDefaults>(directory);
        return current.get();
    }

    // As after a restart: the files are read afresh.
    VLRUserDefaults* restarted()
    {
        current.reset();
        return instance();
    }

    QString fileText(const QString& name) const
    {
        QFile file(folder.filePath("Veluria/" + name));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    QTemporaryDir folder;
    QString directory = folder.filePath("Veluria");
    std::unique_ptr<VLRUserDefaults> current;
    CapturedLog logLines;
};

TEST_F(UserDefaultsTest, EveryTypeComesBackAfterARestartFromAFileAPersonCanRead)
{
    const QDateTime summer(QDate(2024, 5, 1), QTime(9, 30, 0, 250), QTimeZone(7200));
    const QVariantMap values{{"VLRUserDefaultsKeyShowNotifications", true},
                             {"VLRUserDefaultsKeyUpdatePostponedDate", summer},
                             {"VLRUserDefaultsKeyFirstLaunchDate", QDateTime::currentDateTime()},
                             {"empty", ""},
                             {"looks like a tag", "bool:true"},
                             {"odd text", "@Variant(x), \"quoted\" = ; #\nnext line\tÜber 😀"},
                             {"number", -42},
                             {"big number", qlonglong(1) << 53},
                             {"fraction", 2.0 / 3},
                             {"group/key", 7u},
                             {"list", QStringList{"a, b", QString()}},
                             {"bytes", QByteArray("\0\xff", 2)},
                             {"dictionary", QVariantMap{{"when", summer}, {"on", true}}}};
    for (auto it = values.cbegin(); it != values.cend(); ++it)
        instance()->setObject(it.value(), it.key());

    VLRUserDefaults* defaults = restarted();
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        EXPECT_EQ(defaults->objectForKey(it.key()).metaType(), it.value().metaType()) << it.key().toStdString();
        EXPECT_EQ(defaults->objectForKey(it.key()), it.value()) << it.key().toStdString();
    }
    EXPECT_FALSE(defaults->stringForKey("empty").isNull());
    const QString text = fileText("Veluria.conf");
    EXPECT_TRUE(text.contains("VLRUserDefaultsKeyUpdatePostponedDate=date:2024-05-01T09:30:00.250+02:00\n"));
    EXPECT_TRUE(text.contains("VLRUserDefaultsKeyShowNotifications=bool:true\n"));
    EXPECT_EQ(logLines, QStringList());
}

TEST_F(UserDefaultsTest, AnAbsentKeyIsNotAFalseOne)
{
    VLRUserDefaults* defaults = instance();
    EXPECT_FALSE(defaults->objectForKey("VLRUserDefaultsKeyLaunchRestProxy").isValid());
    EXPECT_FALSE(defaults->boolForKey("VLRUserDefaultsKeyLaunchRestProxy"));
    EXPECT_TRUE(defaults->stringForKey("com.veluria.Veluria.Email").isNull());
    defaults->setBool(false, "VLRUserDefaultsKeyShowNotifications");
    defaults->setBool(true, "VLRUserDefaultsKeyAutoOpenAssets");
    defaults->setObject("ann@example.com", "com.veluria.Veluria.Email");
    defaults->setObject(3, "count");

    defaults = restarted();
    EXPECT_TRUE(defaults->objectForKey("VLRUserDefaultsKeyShowNotifications").isValid());
    EXPECT_FALSE(defaults->boolForKey("VLRUserDefaultsKeyShowNotifications"));
    // A string for strings and numbers only.
    EXPECT_TRUE(defaults->stringForKey("VLRUserDefaultsKeyAutoOpenAssets").isNull());
    EXPECT_EQ(defaults->stringForKey("count"), "3");
    // Removed, or set to nothing, a key is absent again.
    defaults->removeObjectForKey("VLRUserDefaultsKeyShowNotifications");
    defaults->setObject(QVariant(), "com.veluria.Veluria.Email");
    defaults = restarted();
    EXPECT_FALSE(defaults->objectForKey("VLRUserDefaultsKeyShowNotifications").isValid());
    EXPECT_FALSE(defaults->objectForKey("com.veluria.Veluria.Email").isValid());
    EXPECT_TRUE(defaults->boolForKey("VLRUserDefaultsKeyAutoOpenAssets"));
}

TEST_F(UserDefaultsTest, APersistentDomainKeepsTheKeysOfOthersInAFileOfItsOwn)
{
    VLRUserDefaults* defaults = instance();
    EXPECT_EQ(defaults->persistentDomainForName(environmentDomain), std::nullopt);
    defaults->setPersistentDomain({{"com.veluria-dev.Other", "kept"}, {environmentKey, "a.veluria.example"}},
                                  environmentDomain);
    // One key changes as the domain is read, changed and written back.
    defaults = restarted();
    std::optional<QVariantMap> domain = defaults->persistentDomainForName(environmentDomain);
    ASSERT_TRUE(domain.has_value());
    domain->insert(environmentKey, "b.veluria.example");
    defaults->setPersistentDomain(*domain, environmentDomain);

    defaults = restarted();
    EXPECT_EQ(defaults->persistentDomainForName(environmentDomain),
              (QVariantMap{{"com.veluria-dev.Other", "kept"}, {environmentKey, "b.veluria.example"}}));
    EXPECT_TRUE(fileText(environmentDomain + ".conf").contains(environmentKey + "=string:b.veluria.example"));
    EXPECT_FALSE(defaults->objectForKey(environmentKey).isValid());
    // An empty domain exists, also one that never had a key.
    defaults->setPersistentDomain({}, "com.veluria-dev.Empty");
    EXPECT_EQ(restarted()->persistentDomainForName("com.veluria-dev.Empty"), QVariantMap());

    // A name can't reach outside the folder.
    defaults = restarted();
    defaults->setPersistentDomain({{"k", 1}}, "../Escaped");
    EXPECT_EQ(defaults->persistentDomainForName("../Escaped"), std::nullopt);
    EXPECT_FALSE(QFile::exists(folder.filePath("Escaped.conf")));
    EXPECT_EQ(logLines, QStringList{"5 SDKClient User defaults: invalid persistent domain name \"../Escaped\""});
}

TEST_F(UserDefaultsTest, SynchronizeReadsWhatAnotherProgramWrote)
{
    VLRUserDefaults* defaults = instance();
    defaults->setBool(true, "VLRUserDefaultsKeyAutoOpenAssets");
    {
        QSettings other(folder.filePath("Veluria/Veluria.conf"), QSettings::IniFormat);
        other.setValue("VLRUserDefaultsKeyLaunchRestProxy", "bool:true");
        other.setValue("edited by hand", "plain");
    }
    EXPECT_FALSE(defaults->objectForKey("VLRUserDefaultsKeyLaunchRestProxy").isValid());
    EXPECT_TRUE(defaults->synchronize());
    EXPECT_TRUE(defaults->boolForKey("VLRUserDefaultsKeyLaunchRestProxy"));
    EXPECT_TRUE(defaults->boolForKey("VLRUserDefaultsKeyAutoOpenAssets"));
    EXPECT_EQ(defaults->objectForKey("edited by hand"), QVariant("plain"));
}

TEST_F(UserDefaultsTest, AnUnwritableFolderKeepsTheValuesForThisRunAndSaysSoOncePerFile)
{
    // Not even root can make a folder inside a plain file.
    QFile blocker(folder.filePath("blocker"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    const QString unwritable = folder.filePath("blocker/Veluria");
    directory = unwritable;
    VLRUserDefaults* defaults = restarted();
    defaults->setBool(false, "VLRUserDefaultsKeyShowNotifications");
    defaults->setObject("ann@example.com", "com.veluria.Veluria.Email");
    defaults->setPersistentDomain({{environmentKey, "a.veluria.example"}}, environmentDomain);

    EXPECT_TRUE(defaults->objectForKey("VLRUserDefaultsKeyShowNotifications").isValid());
    EXPECT_EQ(defaults->stringForKey("com.veluria.Veluria.Email"), "ann@example.com");
    EXPECT_EQ(defaults->persistentDomainForName(environmentDomain),
              (QVariantMap{{environmentKey, "a.veluria.example"}}));
    EXPECT_FALSE(defaults->synchronize());
    const QString failure = "5 SDKClient User defaults: cannot create the folder %1; the values are kept in memory "
                            "for this run";
    EXPECT_EQ(logLines, QStringList({failure.arg(unwritable), failure.arg(unwritable)}));
    defaults = restarted();
    EXPECT_FALSE(defaults->objectForKey("VLRUserDefaultsKeyShowNotifications").isValid());
    EXPECT_EQ(defaults->persistentDomainForName(environmentDomain), std::nullopt);
}

} // namespace
