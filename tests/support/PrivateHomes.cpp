#include "support/PrivateHomes.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <stdexcept>

namespace orv::test {

namespace {
const char *const inheritedMark = "ORV_TEST_HOMES";
}

void usePrivateHomes()
{
    // A test's child process lives inside its parent's homes: it may be killed, and then would
    // leave its own behind.
    if (qEnvironmentVariableIsSet(inheritedMark))
        return;
    // Made once per process and removed at its exit.
    static const QTemporaryDir homes;
    if (!homes.isValid())
        throw std::runtime_error("no temporary folder for the test's homes");
    const std::pair<const char *, const char *> folderOf[] = {{"XDG_DATA_HOME", "data"},
                                                              {"XDG_CONFIG_HOME", "config"},
                                                              {"XDG_CACHE_HOME", "cache"},
                                                              {"XDG_STATE_HOME", "state"},
                                                              {"XDG_RUNTIME_DIR", "runtime"}};
    for (const auto &[variable, folder] : folderOf) {
        const QString path = homes.filePath(QString::fromLatin1(folder));
        QDir().mkpath(path);
        // The runtime folder must be the user's alone, or Qt refuses it.
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv(variable, QFile::encodeName(path));
    }
    qputenv(inheritedMark, QFile::encodeName(homes.path()));
}

} // namespace orv::test
