#include "Intake/EventInbox.h"

#include "Intake/InboxReader.h"

namespace corvane {

std::vector<AgentEvent> EventInbox::drain() const {
    InboxReader reader(directory, agents, 0);
    std::vector<AgentEvent> events;
    reader.begin();
    while (reader.step(events)) {
    }
    return events;
}

} // namespace corvane
