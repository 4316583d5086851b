// What the lab is told to do wrong.
#include "lab/admin/handlers.h"

namespace lab {

namespace {

Json describe_misbehaviour(const Misbehaviour& misbehaviour) {
    Json entry = {
        {"mode", fault_name(misbehaviour.fault)},
        {"listener", misbehaviour.listener},
        {"port", misbehaviour.port},
        {"count", misbehaviour.left}};
    if (misbehaviour.fault == Fault::status)
        entry["status"] = misbehaviour.status;
    if (misbehaviour.fault == Fault::slow)
        entry.update({{"delay_ms", misbehaviour.delay_ms}, {"piece", misbehaviour.piece}});
    return entry;
}

// "door" is what scripts of earlier versions say for "listener".
Misbehaviour read_misbehaviour(const Json& body) {
    refuse_other_members(
        body, {"mode", "listener", "door", "port", "count", "status", "delay_ms", "piece"});
    const std::string mode = read_text(body, "mode", "");
    const auto fault = find_fault(mode);
    if (!fault)
        throw Refusal{400, "there is no mode \"" + mode + "\""};
    Misbehaviour misbehaviour;
    misbehaviour.fault = *fault;
    misbehaviour.listener = read_text(body, "listener", read_text(body, "door", "checkin"));
    take_number<int>(body, "port", 0, 65535, misbehaviour.port);
    take_number<std::int64_t>(body, "count", 0, 1000000, misbehaviour.left);
    take_number<int>(body, "status", 201, 599, misbehaviour.status);
    take_number<std::int64_t>(body, "delay_ms", 0, 10000, misbehaviour.delay_ms);
    take_number<std::int64_t>(body, "piece", 1, 1000000, misbehaviour.piece);
    return misbehaviour;
}

void refuse_impossible(const Misbehaviour& misbehaviour, const AdminParts& parts) {
    const std::string& listener = misbehaviour.listener;
    if (!parts.has_port(listener, 0))
        throw Refusal{400, "there is no listener \"" + listener + "\""};
    if (is_certificate_fault(misbehaviour.fault) && listener != "checkin")
        throw Refusal{400, "only the listener \"checkin\" shows a certificate"};
    if (misbehaviour.fault == Fault::refuse && misbehaviour.left != 0)
        throw Refusal{400, "a refused connection cannot be counted, leave \"count\" out"};
    if (!parts.has_port(listener, misbehaviour.port))
        throw Refusal{
            400,
            "the listener \"" + listener + "\" has no port " + std::to_string(misbehaviour.port)};
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
