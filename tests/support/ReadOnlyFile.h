#pragma once

#include <QString>

namespace orv::test {

// Makes a file unwritable for this process while it lives: its write permissions go, and where
// the process has rights that ignore permissions (root), the file is marked immutable instead.
// isLocked() is false when neither works; tests then skip.
class ReadOnlyFile
{
public:
    explicit ReadOnlyFile(const QString &path);
    ~ReadOnlyFile();
    ReadOnlyFile(const ReadOnlyFile &) = delete;
    ReadOnlyFile &operator=(const ReadOnlyFile &) = delete;

    bool isLocked() const { return m_locked; }

private:
    bool setImmutable(bool on) const;

    QString m_path;
    bool m_immutable = false;
    bool m_locked = false;
};

} // namespace orv::test
