// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"

#include <QObject>

#include <functional>

namespace luma {

/// Keeps the program to one process a user. The first start takes a name on the D-Bus session bus; a later one
/// finds it taken and hands its arguments over. Without a session bus every start is the first. Main
/// thread only; needs the application object.
class SingleInstance final : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.luma.Application")

public:
    enum class Start { First, HandedOver };

    /// Opens what a later start asks for. Its error goes back to that start. Called from the event loop.
    using Opener = std::function<Result<void>(const QList<QByteArray>& arguments)>;

    explicit SingleInstance(Opener opener, QObject* parent = nullptr);
    /// Gives the name back.
    ~SingleInstance() override;

    /// Takes the name, or hands `arguments` to the process that has it and waits until that has opened them.
    /// If that process ends meanwhile, this one becomes the first. Fails with that process's error, or if it
    /// does not answer.
    Result<Start> begin(const QList<QByteArray>& arguments);

public slots:
    /// Called over the bus; answers the error in UTF-8, empty on success.
    Q_SCRIPTABLE QByteArray open(const QList<QByteArray>& arguments);

private:
    Opener m_opener;
    bool m_isRegistered = false;
};

} // namespace luma
