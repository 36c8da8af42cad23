// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/savequestion.h"

#include <QMessageBox>
#include <QPushButton>

namespace luma {

void SaveQuestion::ask(QWidget* window, QObject* context, const QString& name, const Texts& texts,
                       const std::function<void()>& then)
{
    auto* const box = new QMessageBox(QMessageBox::Warning, QObject::tr("Save"), texts.question,
                                      QMessageBox::Cancel, window);
    box->setObjectName(name);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(texts.consequence);
    box->setDefaultButton(QMessageBox::Cancel);
    QObject::connect(box->addButton(texts.button, QMessageBox::AcceptRole), &QPushButton::clicked, context,
                     then);
    box->open();
}

void SaveQuestion::askToReplace(QWidget* window, QObject* context, const QString& file,
                                const std::function<void()>& then)
{
    ask(window, context, QStringLiteral("overwriteQuestion"),
        {QObject::tr("Another program has changed \u201c%1\u201d since it was read.").arg(file),
         QObject::tr("Saving replaces that version with yours."), QObject::tr("Replace")},
        then);
}

} // namespace luma
