#pragma once

#include "EditRecord.h"

#include <cstddef>
#include <vector>

class HistoryObserver;

// The document's log of reversible edits, in steps. Every change made
// through the document's mutators is recorded; the changes made between
// beginGroup and the matching endGroup form one step (groups nest), a change
// outside any group is a step of its own. Recording a new step drops the
// steps that were undone. The document applies the steps (AppData::undo,
// AppData::redo); this class keeps the order, the position and the saved
// point. See docs/undo-redo.md.
class EditHistory {
public:
    using Step = std::vector<EditRecord::Any>;
    static constexpr size_t kNoSavedPoint = static_cast<size_t>(-1);

    // One gesture: the changes until it goes out of scope are one step.
    class Group {
    public:
        explicit Group(EditHistory& history) : m_history(history) { m_history.beginGroup(); }
        ~Group() { m_history.endGroup(); }
        Group(const Group&) = delete;
        Group& operator=(const Group&) = delete;

    private:
        EditHistory& m_history;
    };

    // Nothing is recorded while one is alive: loading, saving, applying a
    // step, moves of the whole view.
    class Pause {
    public:
        explicit Pause(EditHistory& history) : m_history(history) { ++m_history.m_paused; }
        ~Pause() { --m_history.m_paused; }
        Pause(const Pause&) = delete;
        Pause& operator=(const Pause&) = delete;

    private:
        EditHistory& m_history;
    };

    void beginGroup() { ++m_depth; }
    // An end without a begin is ignored.
    void endGroup();
    bool isGroupOpen() const { return m_depth > 0; }

    bool isRecording() const { return m_paused == 0; }
    // Appends a record to the open step, or makes it a step of its own.
    // A move of the node that the step's last record moved extends that
    // record. Ignored while paused.
    void record(EditRecord::Any record);

    bool canUndo() const { return m_position > 0; }
    bool canRedo() const { return m_position < m_steps.size(); }
    // The step to undo (the position moves back), or null. A step under way
    // ends first: what its group changes after the undo is a step of its own.
    Step* takeUndo();
    // The step to redo (the position moves on), or null; likewise.
    Step* takeRedo();

    // Forgets every step; the empty history is the saved point.
    void clear();
    // The current position is what is on disk.
    void markSaved() { m_saved = m_position; }
    bool isAtSavedPoint() const { return m_saved == m_position; }
    // What is on disk is no state of the history (a document restored from
    // a recovery copy).
    void forgetSavedPoint() { m_saved = kNoSavedPoint; }

    size_t getStepCount() const { return m_steps.size(); }
    size_t getPosition() const { return m_position; }
    // Bytes held by the recorded steps.
    size_t bytes() const;

    void setObserver(HistoryObserver* observer) { m_observer = observer; }
    HistoryObserver* getObserver() const { return m_observer; }

private:
    void open_step();
    static bool extend_move(Step& step, const EditRecord::Any& record);

    std::vector<Step> m_steps;
    size_t m_position = 0;
    size_t m_saved = 0;
    int m_depth = 0;
    int m_paused = 0;
    bool m_stepOpen = false;
    HistoryObserver* m_observer = nullptr;
};
