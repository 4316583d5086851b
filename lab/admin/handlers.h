// What the admin interface can do: a function for each line of the table in routes.cpp. Each
// returns the reply or throws a Refusal.
#pragma once

#include "lab/admin/request.h"

namespace lab {

// page.cpp, overview.cpp
Reply show_page(const Request& request);
Reply show_page_file(const Request& request);
Reply show_overview(const Request& request);
Reply show_switch_overview(const Request& request);
Reply page_reports(const Request& request);
Reply page_settings(const Request& request);
Reply page_actions(const Request& request);
Reply page_events(const Request& request);
Reply show_history(const Request& request);
Reply show_checkins(const Request& request);
Reply show_diagnostics(const Request& request);
Reply show_way(const Request& request);
void add_refusal(Json& text, const SwitchOverview& entry); // "refusal", if its last try had one

// switches.cpp
Reply list_switches(const Request& request);
Reply show_switch(const Request& request);
Reply register_switch(const Request& request);
Reply forget_switch(const Request& request);

// reports.cpp
Reply show_latest_report(const Request& request);
Reply show_report(const Request& request);
Reply list_reports(const Request& request);

// settings.cpp
Reply list_settings(const Request& request);
Reply queue_settings(const Request& request);
Reply withdraw_settings(const Request& request);

// actions.cpp
Reply list_actions(const Request& request);
Reply push_action(const Request& request);

// events.cpp
Reply wait_for_events(const Request& request);
Reply show_stats(const Request& request);
EventFilter read_filter(const Request& request);
Json describe_event(const EventRecord& event);

// stream.cpp
Reply stream_events(const Request& request);

// setup.cpp
Reply show_ports(const Request& request);
Reply show_policy(const Request& request);
Reply set_policy(const Request& request);

// misbehaviours.cpp
Reply list_misbehaviours(const Request& request);
Reply add_misbehaviour(const Request& request);
Reply clear_misbehaviours(const Request& request);

// images.cpp
Reply list_images(const Request& request);
Reply put_image(const Request& request);
Reply drop_image(const Request& request);

} // namespace lab
