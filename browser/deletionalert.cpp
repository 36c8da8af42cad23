// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/deletionalert.h"

#include "browser/displaytext.h"

#include <QCoreApplication>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>

namespace luma {

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(luma::DeletionAlert)
};

} // namespace

TrashOutcome moveAllToTrash(const std::vector<std::filesystem::path>& items,
                            const std::function<bool()>& isWanted)
{
    TrashOutcome outcome;
    for (const std::filesystem::path& item : items) {
        if (!isWanted())
            break;
        auto moved = moveToTrash(item);
        if (moved) {
            outcome.trashed.push_back(*std::move(moved));
            continue;
        }
        if (outcome.left.empty())
            outcome.reason = moved.error().text;
        outcome.left.push_back(item);
    }
    return outcome;
}

QMessageBox* askToDelete(QWidget& parent, const QString& name, const QString& question,
                         std::function<void()> accepted)
{
    auto* const alert = new QMessageBox(QMessageBox::Warning, Texts::tr("Warning"), Texts::tr("Warning"),
                                        QMessageBox::NoButton, parent.window());
    alert->setObjectName(name);
    alert->setAttribute(Qt::WA_DeleteOnClose);
    alert->setTextFormat(Qt::PlainText);
    alert->setInformativeText(question);
    QPushButton* const yes = alert->addButton(Texts::tr("Delete"), QMessageBox::AcceptRole);
    QPushButton* const no = alert->addButton(Texts::tr("No"), QMessageBox::RejectRole);
    alert->setDefaultButton(no);
    alert->setEscapeButton(no);
    QObject::connect(yes, &QAbstractButton::clicked, &parent, std::move(accepted));
    alert->open();
    return alert;
}

QString questionAbout(const TrashOutcome& outcome)
{
    return Texts::tr("%1 can't be moved to the trash:\n%2\nDelete for good? This can't be undone.")
        .arg(namesOf(outcome.left), displayText(outcome.reason));
}

QString namesOf(const std::vector<std::filesystem::path>& items)
{
    constexpr std::size_t most = 5;
    QStringList names;
    for (std::size_t i = 0; i < items.size() && i < most; ++i)
        names.append(Texts::tr("“%1”").arg(displayText(items[i].filename().native())));
    const QString text = names.join(QStringLiteral(", "));
    return items.size() <= most
               ? text
               : Texts::tr("%1 and %2 more").arg(text, QLocale().toString(items.size() - most));
}

} // namespace luma
