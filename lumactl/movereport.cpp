// SPDX-License-Identifier: GPL-3.0-or-later
#include "lumactl/movereport.h"
#include "lumactl/standardoutput.h"

namespace luma {

LinkUpdatingMove::Callbacks MoveReport::callbacks()
{
    LinkUpdatingMove::Callbacks callbacks;
    callbacks.log = [this](const std::string& text) { m_output.text() += text; };
    callbacks.problem = [](const MoveProblem& problem) { complain(problem.text); };
    return callbacks;
}

ExitCode MoveReport::finish(const MoveOutcome& outcome)
{
    if (!m_output.text().empty())
        m_output.text() += "\n";
    return m_output.finish() && outcome.problems.empty() ? ExitCode::Ok : ExitCode::Found;
}

} // namespace luma
