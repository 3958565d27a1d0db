#include "EditHistory.h"

void EditHistory::endGroup()
{
    if (m_depth == 0)
        return;
    if (--m_depth == 0)
        m_stepOpen = false;
}

void EditHistory::record(EditRecord::Any record)
{
    if (!isRecording())
        return;
    if (m_stepOpen && extend_move(m_steps.back(), record))
        return;
    if (!m_stepOpen)
        open_step();
    m_steps.back().push_back(std::move(record));
    if (m_depth == 0)
        m_stepOpen = false;
}

void EditHistory::open_step()
{
    // What was undone cannot be redone once something new is done.
    m_steps.resize(m_position);
    if (m_saved != kNoSavedPoint && m_saved > m_position)
        m_saved = kNoSavedPoint;
    m_steps.emplace_back();
    ++m_position;
    m_stepOpen = true;
}

bool EditHistory::extend_move(Step& step, const EditRecord::Any& record)
{
    const auto* move = std::get_if<EditRecord::NodeMove>(&record);
    auto* last = step.empty() ? nullptr : std::get_if<EditRecord::NodeMove>(&step.back());
    if (!move || !last || last->id != move->id)
        return false;
    last->x1 = move->x1;
    last->y1 = move->y1;
    return true;
}

EditHistory::Step* EditHistory::takeUndo()
{
    m_stepOpen = false;
    return canUndo() ? &m_steps[--m_position] : nullptr;
}

EditHistory::Step* EditHistory::takeRedo()
{
    m_stepOpen = false;
    return canRedo() ? &m_steps[m_position++] : nullptr;
}

void EditHistory::clear()
{
    m_steps.clear();
    m_position = 0;
    m_saved = 0;
    m_depth = 0;
    m_stepOpen = false;
}

size_t EditHistory::bytes() const
{
    size_t total = m_steps.capacity() * sizeof(Step);
    for (const Step& step : m_steps) {
        total += (step.capacity() - step.size()) * sizeof(EditRecord::Any);
        for (const EditRecord::Any& record : step)
            total += EditRecord::bytes(record);
    }
    return total;
}
