#include "platform/desktop/hot_key.h"

#include <Carbon/Carbon.h>

#include <utility>

namespace tessellar {

namespace {

UInt32 carbonModifiers(unsigned modifiers) {
    UInt32 carbon = 0;
    for (const auto& [ours, theirs] : {std::pair<unsigned, UInt32>{KeyChord::withCommand, cmdKey},
                                       {KeyChord::withShift, shiftKey},
                                       {KeyChord::withOption, optionKey},
                                       {KeyChord::withControl, controlKey}})
        carbon |= modifiers & ours ? theirs : 0;
    return carbon;
}

class CarbonHotKey final : public HotKey {
public:
    explicit CarbonHotKey(std::function<void()> pressed) : _pressed(std::move(pressed)) {}
    ~CarbonHotKey() override {
        if (_key)
            ::UnregisterEventHotKey(_key);
        if (_handler)
            ::RemoveEventHandler(_handler);
    }

    bool start(UInt32 keyCode, UInt32 modifiers) {
        static UInt32 lastIdentifier = 0;
        _identifier = {'Tssl', ++lastIdentifier};
        const EventTypeSpec type{kEventClassKeyboard, kEventHotKeyPressed};
        const EventTargetRef target = ::GetApplicationEventTarget();
        return ::InstallEventHandler(target, handle, 1, &type, this, &_handler) == noErr &&
               ::RegisterEventHotKey(keyCode, modifiers, _identifier, target, 0, &_key) == noErr;
    }

private:
    static OSStatus handle(EventHandlerCallRef, EventRef event, void* data) {
        const auto* self = static_cast<CarbonHotKey*>(data);
        EventHotKeyID pressed{};
        if (::GetEventParameter(event, kEventParamDirectObject, typeEventHotKeyID, nullptr,
                                sizeof pressed, nullptr, &pressed) != noErr ||
            pressed.signature != self->_identifier.signature || pressed.id != self->_identifier.id)
            return eventNotHandledErr;
        self->_pressed();
        return noErr;
    }

    std::function<void()> _pressed;
    EventHotKeyID _identifier{};
    EventHandlerRef _handler = nullptr;
    EventHotKeyRef _key = nullptr;
};

} // namespace

bool HotKey::areAvailable() { return true; }

std::unique_ptr<HotKey> HotKey::make(KeyChord chord, std::function<void()> pressed) {
    auto key = std::make_unique<CarbonHotKey>(std::move(pressed));
    if (!key->start(chord.keyCode, carbonModifiers(chord.modifiers)))
        return nullptr;
    return key;
}

} // namespace tessellar
