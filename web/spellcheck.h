// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "web/spelldictionaries.h"

#include <QObject>
#include <QStringList>

class QWebEngineProfile;

namespace luma {

/// Checks the spelling in the pages of a profile, with the desktop's dictionaries. The engine marks words in what it shows,
/// never in the page's markup. Main thread.
class SpellCheck final : public QObject
{
    Q_OBJECT

public:
    explicit SpellCheck(QWebEngineProfile& profile);

    /// Tells the engine where its dictionaries will be; before the first profile is made.
    static void preparePath();

    [[nodiscard]] bool isOn() const { return m_isOn; }
    void setOn(bool on);

    /// The languages (BCP 47) of the page that the user works in; the desktop's own if there are none. Dictionaries are
    /// converted on a thread of the pool, so the words are marked when that is done.
    void setLanguages(const QStringList& languages);
    [[nodiscard]] const QStringList& languages() const { return m_languages; }

signals:
    void changed(bool isOn);
    /// From now on the engine checks in the languages() but these, for which there is no dictionary. So after each change.
    void languagesUsed(const QStringList& missing);

private:
    void update();
    void use(const QStringList& names, const QStringList& missing);

    QWebEngineProfile& m_profile;
    QStringList m_languages;
    bool m_isOn = false;
    int m_updates = 0;
};

} // namespace luma
