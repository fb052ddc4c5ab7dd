#pragma once

#include "core/Preferences.h"

#include "support/PrivateHomes.h"
#include "support/QtPrinters.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

namespace orv::test {

// A settings file in a fresh temporary folder; the user's own settings are never touched.
class PreferencesFixture : public ::testing::Test
{
protected:
    void SetUp() override
    {
        usePrivateHomes();
        ASSERT_TRUE(m_dir.isValid());
        m_prefs = std::make_unique<Preferences>(settingsPath());
    }

    QString settingsPath() const
    {
        return m_dir.filePath(QStringLiteral("orvelle-%1.conf").arg(m_starts));
    }

    // As at the next start: the store is written and read back from its bytes. QSettings keeps
    // typed values of a file it has seen in a cache of the process, so the bytes are read under
    // a new name, as a new process would read them.
    void restart()
    {
        const QString previous = settingsPath();
        m_prefs.reset();
        ++m_starts;
        QFile::copy(previous, settingsPath());
        m_prefs = std::make_unique<Preferences>(settingsPath());
    }

    QByteArray fileContents()
    {
        m_prefs->sync();
        QFile file(settingsPath());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    Preferences &prefs() { return *m_prefs; }

private:
    QTemporaryDir m_dir;
    int m_starts = 0;
    std::unique_ptr<Preferences> m_prefs;
};

} // namespace orv::test
