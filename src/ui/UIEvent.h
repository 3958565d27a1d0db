#pragma once

// The base of the small event records that the editor's handlers take. Qt
// events are translated into them in one place (UIEventTranslator), so tests
// can drive the handlers directly with hand-made events.
enum UIEventType {
    UI_EVENT_MOUSE,
    UI_EVENT_KEY,
    UI_EVENT_DROP,
    // The editor window compiled a material (MaterialCompiledEvent).
    UI_EVENT_COMPILED,
};

class UIEvent {
public:
    explicit UIEvent(UIEventType type) : m_type(type) {}
    virtual ~UIEvent() = default;

    UIEventType getType() const { return m_type; }

private:
    UIEventType m_type;
};
