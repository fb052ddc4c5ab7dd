#pragma once

#include "folders/ImportErrors.h"

#include <QDialog>

class QTreeWidget;

namespace orv {

// What went wrong in one folder's import, kept after the import for the report.
struct FolderImportErrors
{
    QString folderName;
    QString folderPath;
    ImportErrors errors;
};

// The one report at the end of an import: per folder, each kind of problem with the files it hit.
// Everything else was imported; the report only says what was left out or read with less.
class ImportErrorsDialog : public QDialog
{
    Q_OBJECT
public:
    explicit ImportErrorsDialog(const QList<FolderImportErrors> &folders, QWidget *parent = nullptr);

    // The report as plain text, one line per folder, problem and file.
    QString reportText() const;

private:
    QTreeWidget *m_tree;
};

} // namespace orv
