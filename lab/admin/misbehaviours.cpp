// What the lab is told to do wrong.
#include "lab/admin/handlers.h"

namespace lab {

namespace {

Json describe_misbehaviour(const Misbehaviour& misbehaviour) {
    Json entry = {
        {"mode", name_of(misbehaviour.fault)},
        {"door", misbehaviour.door},
        {"port", misbehaviour.port},
        {"count", misbehaviour.left}};
    if (misbehaviour.fault == Fault::status)
        entry["status"] = misbehaviour.status;
    if (misbehaviour.fault == Fault::slow)
        entry.update({{"delay_ms", misbehaviour.delay_ms}, {"piece", misbehaviour.piece}});
    return entry;
}

Misbehaviour read_misbehaviour(const Json& body) {
    refuse_other_members(body, {"mode", "door", "port", "count", "status", "delay_ms", "piece"});
    const std::string mode = read_text(body, "mode", "");
    const auto fault = fault_named(mode);
    if (!fault)
        throw Refusal{400, "there is no mode \"" + mode + "\""};
    Misbehaviour misbehaviour;
    misbehaviour.fault = *fault;
    misbehaviour.door = read_text(body, "door", "checkin");
    take_number<int>(body, "port", 0, 65535, misbehaviour.port);
    take_number<int64_t>(body, "count", 0, 1000000, misbehaviour.left);
    take_number<int>(body, "status", 201, 599, misbehaviour.status);
    take_number<int64_t>(body, "delay_ms", 0, 10000, misbehaviour.delay_ms);
    take_number<int64_t>(body, "piece", 1, 1000000, misbehaviour.piece);
    return misbehaviour;
}

void refuse_impossible(const Misbehaviour& misbehaviour, const AdminParts& parts) {
    const std::string& door = misbehaviour.door;
    if (!parts.has_port(door, 0))
        throw Refusal{400, "there is no door \"" + door + "\""};
    if (is_certificate_fault(misbehaviour.fault) && door != "checkin")
        throw Refusal{400, "only the door \"checkin\" shows a certificate"};
    if (misbehaviour.fault == Fault::refuse && misbehaviour.left != 0)
        throw Refusal{400, "a refused connection cannot be counted, leave \"count\" out"};
    if (!parts.has_port(door, misbehaviour.port))
        throw Refusal{
            400, "the door \"" + door + "\" has no port " + std::to_string(misbehaviour.port)};
}

} // namespace

Reply list_misbehaviours(const Request& request) {
    Json list = Json::array();
    for (const auto& misbehaviour : request.parts.misbehaviours.all())
        list.push_back(describe_misbehaviour(misbehaviour));
    return reply_json(list);
}

Reply add_misbehaviour(const Request& request) {
    const Misbehaviour misbehaviour = read_misbehaviour(parse_object(request));
    refuse_impossible(misbehaviour, request.parts);
    request.parts.misbehaviours.add(misbehaviour);
    request.parts.misbehaviour_changed();
    return reply_json(describe_misbehaviour(misbehaviour), 201);
}

Reply clear_misbehaviours(const Request& request) {
    request.parts.misbehaviours.clear();
    request.parts.misbehaviour_changed();
    return reply_json(Json::object());
}

} // namespace lab
