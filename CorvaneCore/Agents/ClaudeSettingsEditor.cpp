#include "Agents/ClaudeSettingsEditor.h"

#include "Agents/ConfigEditError.h"
#include "Agents/HookScript.h"
#include "Support/Json.h"

#include <algorithm>
#include <utility>

namespace corvane::ClaudeSettingsEditor {

namespace {

/// None when `current` is not a JSON object.
std::optional<Json> parse(std::string_view current) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (current.starts_with(byteOrderMark)) current.remove_prefix(byteOrderMark.size());
    if (current.find_first_not_of("\t\n\r ") == std::string_view::npos) return Json(Json::Object());
    std::optional<Json> document = Json::parse(current);
    if (document && document->ifObject() == nullptr) document.reset();
    return document;
}

Json parseOrThrow(std::string_view current) {
    std::optional<Json> document = parse(current);
    if (!document) {
        throw ConfigEditError::unreadable(
            translatable("corvane::ConfigEditError", "settings.json is not valid JSON").key);
    }
    return std::move(*document);
}

std::string write(const Json& document) {
    return document.write(Json::Layout::indented) + "\n";
}

/// `value` if it is an array of objects only, else null.
const Json::Array* arrayOfObjects(const Json* value) {
    const Json::Array* array = value == nullptr ? nullptr : value->ifArray();
    const auto isObject = [](const Json& element) { return element.ifObject() != nullptr; };
    return array != nullptr && std::all_of(array->begin(), array->end(), isObject) ? array : nullptr;
}

bool isOwnEntry(const Json& entry) {
    const Json* command = entry.find("command");
    const std::string* text = command == nullptr ? nullptr : command->ifString();
    return text != nullptr && text->find(HookScript::marker) != std::string::npos;
}

bool containsMarker(const Json& group) {
    const Json::Array* entries = arrayOfObjects(group.find("hooks"));
    return entries != nullptr && std::any_of(entries->begin(), entries->end(), isOwnEntry);
}

/// The group without own entries; none when no entry is left.
std::optional<Json> removingMarker(const Json& group) {
    if (!containsMarker(group)) return group;
    Json::Array kept = *group.find("hooks")->ifArray();
    kept.erase(std::remove_if(kept.begin(), kept.end(), isOwnEntry), kept.end());
    if (kept.empty()) return std::nullopt;
    Json::Object rest = *group.ifObject();
    rest.insert_or_assign("hooks", std::move(kept));
    return Json(std::move(rest));
}

Json ownGroup(std::string_view event, std::string_view command) {
    Json::Object group;
    group.emplace("hooks", Json::Array{Json::Object{{"command", command}, {"type", "command"}}});
    if (std::find(matcherEvents.begin(), matcherEvents.end(), event) != matcherEvents.end()) {
        group.emplace("matcher", "");
    }
    return group;
}

} // namespace

std::string install(std::optional<std::string_view> current, std::string_view command) {
    const Json before = parseOrThrow(current.value_or(""));
    Json document = before;
    Json& hooks = document.ifObject()->try_emplace("hooks").first->second;
    if (hooks.ifObject() == nullptr) hooks = Json::Object();
    for (const std::string_view event : events) {
        Json& value = (*hooks.ifObject())[std::string(event)];
        Json::Array groups;
        if (arrayOfObjects(&value) != nullptr) groups = std::move(*value.ifArray());
        groups.erase(std::remove_if(groups.begin(), groups.end(), containsMarker), groups.end());
        groups.push_back(ownGroup(event, command));
        value = std::move(groups);
    }
    return current && document == before ? std::string(*current) : write(document);
}

std::string uninstall(std::string_view current) {
    Json document = parseOrThrow(current);
    const auto found = document.ifObject()->find("hooks");
    Json::Object* hooks = found == document.ifObject()->end() ? nullptr : found->second.ifObject();
    const auto hasOwnGroup = [](const Json::Object::value_type& event) {
        const Json::Array* groups = arrayOfObjects(&event.second);
        return groups != nullptr && std::any_of(groups->begin(), groups->end(), containsMarker);
    };
    if (hooks == nullptr || std::none_of(hooks->begin(), hooks->end(), hasOwnGroup))
        return std::string(current);

    for (auto event = hooks->begin(); event != hooks->end();) {
        const Json::Array* groups = arrayOfObjects(&event->second);
        if (groups == nullptr) {
            ++event;
            continue;
        }
        Json::Array kept;
        for (const Json& group : *groups) {
            if (std::optional<Json> rest = removingMarker(group)) kept.push_back(std::move(*rest));
        }
        if (kept.empty()) {
            event = hooks->erase(event);
        } else {
            event->second = std::move(kept);
            ++event;
        }
    }
    if (hooks->empty()) document.ifObject()->erase(found);
    return write(document);
}

bool isInstalled(std::optional<std::string_view> current) {
    const std::optional<Json> document = current ? parse(*current) : std::nullopt;
    const Json* hooks = document ? document->find("hooks") : nullptr;
    return hooks != nullptr && std::all_of(events.begin(), events.end(), [&](std::string_view event) {
               const Json::Array* groups = arrayOfObjects(hooks->find(event));
               return groups != nullptr && std::any_of(groups->begin(), groups->end(), containsMarker);
           });
}

} // namespace corvane::ClaudeSettingsEditor
