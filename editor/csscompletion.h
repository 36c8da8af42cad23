// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/csssyntax.h"

#include <QObject>
#include <QPointer>
#include <QStringList>

#include <functional>

class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QWidget;

namespace luma {

class CssVocabulary;

/// Offers what a word of CSS may become, in a list below the cursor of a field, while the user types or at Control+Space. The
/// field keeps the focus: arrows choose, Enter or Tab takes over, Escape closes. Belongs to the field. Main thread.
class CssCompletion final : public QObject
{
    Q_OBJECT

public:
    /// For a sheet.
    CssCompletion(QPlainTextEdit* field, CssVocabulary& vocabulary);
    /// For the value of a property, or for a declaration if it is empty.
    CssCompletion(QLineEdit* field, const QString& property, CssVocabulary& vocabulary);
    ~CssCompletion() override;

    [[nodiscard]] bool isShown() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// What differs between the kinds of fields.
    struct Access
    {
        std::function<QString()> textBefore; ///< the cursor, as of a sheet
        std::function<QString()> textBehind;
        std::function<QRect()> cursor; ///< in the field
        /// Puts the text in place of so many characters in front of the cursor, which then goes back by `back`.
        std::function<void(qsizetype length, const QString& text, int back)> replace;
    };

    CssCompletion(QWidget* field, Access access, CssVocabulary& vocabulary);
    enum class Begin { WithWord, Anywhere };
    void suggest(Begin begin);
    void collect(const CssPlace& place);
    void offer(const CssPlace& place, QStringList words);
    void placeList();
    void tellCurrent();
    void take();
    bool takeKey(int key);

    QWidget* m_field;
    Access m_access;
    CssVocabulary& m_vocabulary;
    QPointer<QListWidget> m_list;
    CssPlace m_place; // that the list is for
};

} // namespace luma
