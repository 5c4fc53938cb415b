#include "common/poll_item.h"

#include "common/poll_processor.h"

PollItem::PollItem(short events, bool register_now) : events_(events) {
    if (register_now) Register();
}

PollItem::~PollItem() { Unregister(); }

void PollItem::Register() {
    if (registered_) return;
    PollProcessor& processor = PollProcessor::Instance();
    processor.items_.Add(this);
    processor.NoteItemsChanged();
    registered_ = true;
}

void PollItem::Unregister() {
    if (!registered_) return;
    PollProcessor& processor = PollProcessor::Instance();
    processor.items_.Remove(this);
    processor.NoteItemsChanged();
    registered_ = false;
}

void PollItem::SetEvents(short events) {
    if (events == events_) return;
    events_ = events;
    PollProcessor::Instance().table_stale_ = true;
}
