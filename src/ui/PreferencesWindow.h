#pragma once

#include <QDialog>

class QFormLayout;
class QTabWidget;

namespace orv {

class Preferences;

// The preferences a user sets, in panes: how the other dates of a file follow a moved capture
// date (files with date tags, files without), what a save writes besides dates, and how folders
// are imported. Every control reads its key from the store and writes it back at once, with the
// "prefsChanged" notification, so what reads the preferences live (the pre-save summary, the
// next save or import) follows without a restart.
class PreferencesWindow : public QDialog
{
    Q_OBJECT
public:
    PreferencesWindow(Preferences &prefs, QWidget *parent);

    // The window's one preferences window, made on first use and brought to the front.
    static PreferencesWindow &showFor(Preferences &prefs, QWidget *window);

private:
    struct Option
    {
        int value;
        QString text;
    };
    QFormLayout &addPane(const QString &title);
    // A choice among values of one integer key; a value the store holds that no option names
    // shows no option, and stays until the user picks one.
    void addChoice(QFormLayout &pane, const QString &key, const QString &label, const QList<Option> &options);
    void addSwitch(QFormLayout &pane, const QString &key, const QString &text);

    Preferences &m_prefs;
    QTabWidget *m_panes;
};

} // namespace orv
