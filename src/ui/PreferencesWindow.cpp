#include "ui/PreferencesWindow.h"

#include "core/Preferences.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QTabWidget>
#include <QVBoxLayout>

namespace orv {

PreferencesWindow::PreferencesWindow(Preferences &prefs, QWidget *parent)
    : QDialog(parent), m_prefs(prefs), m_panes(new QTabWidget(this))
{
    setObjectName(QStringLiteral("preferencesWindow"));
    setWindowTitle(tr("Preferences"));

    QFormLayout &tagged = addPane(tr("Dates in Tags"));
    addChoice(tagged, QStringLiteral("dateChangeEXIFEXIFDigiDate"), tr("Digitized date:"),
              {{0, tr("Takes the new capture date")},
               {1, tr("Stays, but never before the capture date")},
               {3, tr("Moves along with the capture date")}});
    addSwitch(tagged, QStringLiteral("dateChangeEXIFEXIFDigiDateUnchangedOption"),
              tr("Follows the capture date where it was the same"));
    addChoice(tagged, QStringLiteral("dateChangeEXIFEXIFModDate"), tr("Modify date:"),
              {{0, tr("Takes the newest date of the tags")},
               {1, tr("Stays, but never before the newest date of the tags")},
               {2, tr("Takes the time of saving")},
               {3, tr("Moves along with the capture date")}});
    addSwitch(tagged, QStringLiteral("dateChangeEXIFEXIFModDateUnchangedOption"),
              tr("Follows the capture date where it was the same"));
    addSwitch(tagged, QStringLiteral("dateChangeEXIFChangeFinderWhenChangingEXIF"),
              tr("Change the file's own dates too"));
    addChoice(tagged, QStringLiteral("dateChangeEXIFFinderCreaDate2"), tr("File creation date:"),
              {{0, tr("The new capture date")}, {1, tr("The new digitized date")}, {2, tr("The new modify date")}});
    addChoice(tagged, QStringLiteral("dateChangeEXIFFinderModDate"), tr("File modification date:"),
              {{0, tr("The new modify date")}, {1, tr("Stays")}, {2, tr("The time of saving")}});

    QFormLayout &untagged = addPane(tr("Dates without Tags"));
    addChoice(untagged, QStringLiteral("dateChangeNoEXIFFinderModDate"), tr("File modification date:"),
              {{0, tr("Takes the new date")},
               {1, tr("Takes the time of saving")},
               {2, tr("Stays, but never before the new date")},
               {3, tr("Moves along with the new date")}});
    addSwitch(untagged, QStringLiteral("dateChangeNoEXIFFinderModDateUnchangedOption"),
              tr("Follows the new date where it was the same"));

    QFormLayout &saving = addPane(tr("Saving"));
    addSwitch(saving, QStringLiteral("syncXMPDataOnSave"), tr("Write dates and places into XMP too"));
    addSwitch(saving, QStringLiteral("syncGPSDataOnSave"), tr("Write the GPS date and time with a moved date"));
    addSwitch(saving, QStringLiteral("setPositioningErrorsToZeroOnChange"),
              tr("A moved place sets the positioning error to 0"));
    addSwitch(saving, QStringLiteral("addRawLocationsOnlyInSidecars"), tr("Put places of RAW files only in sidecars"));
    addSwitch(saving, QStringLiteral("writeRatingsToXMPOnSave"),
              tr("Write keepers and rejects as XMP ratings (5 and -1) for other programs"));

    QFormLayout &importing = addPane(tr("Import"));
    addSwitch(importing, QStringLiteral("createFileGroups"), tr("Group RAW and JPEG files and Live Photos"));
    addSwitch(importing, QStringLiteral("isSubFolderAutoImportEnabled"), tr("Import subfolders too"));

    QFormLayout &tray = addPane(tr("State Tray"));
    addSwitch(tray, QStringLiteral("includeThumbsInStateFilesTray"), tr("Keep the thumbnails with a working set"));
    addSwitch(tray, QStringLiteral("stateTrayIgnoreWindowData"),
              tr("Leave the window as it is when a kept working set opens"));

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_panes, 1);
    layout->addWidget(buttons);
}

PreferencesWindow &PreferencesWindow::showFor(Preferences &prefs, QWidget *window)
{
    auto *prefsWindow = window->findChild<PreferencesWindow *>(QStringLiteral("preferencesWindow"));
    if (!prefsWindow)
        prefsWindow = new PreferencesWindow(prefs, window);
    prefsWindow->show();
    prefsWindow->raise();
    prefsWindow->activateWindow();
    return *prefsWindow;
}

QFormLayout &PreferencesWindow::addPane(const QString &title)
{
    auto *pane = new QWidget(m_panes);
    auto *form = new QFormLayout(pane);
    m_panes->addTab(pane, title);
    return *form;
}

void PreferencesWindow::addChoice(QFormLayout &pane, const QString &key, const QString &label,
                                  const QList<Option> &options)
{
    auto *choice = new QComboBox(pane.parentWidget());
    choice->setObjectName(key);
    for (const Option &option : options)
        choice->addItem(option.text, option.value);
    choice->setCurrentIndex(choice->findData(int(m_prefs.integerForKey(key))));
    connect(choice, &QComboBox::activated, this,
            [this, choice, key] { m_prefs.setValueNotifying(key, choice->currentData()); });
    pane.addRow(label, choice);
}

void PreferencesWindow::addSwitch(QFormLayout &pane, const QString &key, const QString &text)
{
    auto *box = new QCheckBox(text, pane.parentWidget());
    box->setObjectName(key);
    box->setChecked(m_prefs.boolForKey(key));
    connect(box, &QCheckBox::toggled, this,
            [this, key](bool on) { m_prefs.setValueNotifying(key, on); });
    pane.addRow(QString(), box);
}

} // namespace orv
