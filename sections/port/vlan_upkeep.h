// Keeping the VLAN table in step with the ports' membership: VLANs come with their first member and
// go with their last. The cloud itself neither creates nor deletes any.
#pragma once

extern "C" {

// Makes `port` (zero-based) a member, in the way `kind` says (VLAN_TAGGED or VLAN_UNTAGGED), of
// exactly the VLANs of `text`, a list such as "1,10-12"; VLANs that do not exist are created. The
// other kind's membership is left alone. Returns 0 or the code of the first platform call that
// failed, with what was done before it left standing; nothing is recorded.
int Auto_edit_vlan(int port, int kind, const char* text);

// Deletes every VLAN without members, whichever it is. Returns 0 or the code of the first platform
// call that failed, which ends the sweep; nothing is recorded.
int Clear_no_member_vlan(void);
}
