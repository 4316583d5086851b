"""Libraries with one bad habit each: everyone is convicted, of that habit, at that call."""
import concurrent.futures
import json
import os
import pathlib
import subprocess
import tempfile
import unittest

from judge_case import BUILD, SOURCE

PROGRAM = BUILD / "tests/judge/platform_judge_habits"
BESIDE_READS = {"change": ["--change"], "clear": ["--clear-counters"], "cable": ["--cable-test"],
                "hang": ["--timeout", "2"]}

# The habit, where it shows, with which options, why it convicts, and at which call.
HABITS = """
eight ports                        | system     |        | value out of range             | sys_logic_port_num_ret() = 8
no version                         | system     |        | value out of range             | fds_sys_version_ret()
a text without an end              | system     |        | text not terminated            | sal_sys_systemName_get()
one byte too many                  | system     |        | wrote beyond the buffer        | sal_sys_systemName_get()
time that runs backwards           | system     |        | calls disagree                 | sal_sys_systemUptime_get()
a mask with gaps                   | system     |        | value out of range             | sal_sys_ip_get()
an answer that alternates          | led        |        | result does not repeat         | sal_swctrl_poe_led_mode_get()
an output touched on failure       | port       |        | output touched on failure      | sal_port_enable_get(-1)
a good port refused                | port       |        | valid call refused             | sal_port_protected_get(5) = 30
a setter that forgets              | port       | change | value not stored               | sal_port_protected_set(
a flag of 2                        | port       |        | value out of range             | sal_port_flowCtrl_get(
any flag taken                     | port       | change | invalid call accepted          | sal_port_flowCtrl_set(0, 2)
fibre groups                       | port       |        | calls disagree                 | sys_port_lPortMedia_ret(27) = 1
a link for all                     | port       |        | calls disagree                 | sys_port_linkStatus_ret(2) = 1
one name for all ports             | port       |        | calls disagree                 | sys_port_lPort2uStr(1, 2)
any port taken                     | rate       |        | invalid call accepted          | sal_rate_igrBandwidthCtrlEnable_get(28)
a rate that is bent                | rate       | change | invalid call accepted          | sal_rate_igrBandwidthCtrlRate_set(0, 15)
a rate that is rounded             | rate       | change | value not stored               | sal_rate_egrBandwidthCtrlRate_set(0, 65)
half a counter                     | mib        |        | output not written             | sal_mib_etherStatsOctets_get(
a counter that runs backwards      | mib        |        | calls disagree                 | sal_mib_etherStatsPkts_get(
a clear that clears nothing        | mib        | clear  | value not stored               | sal_mib_etherStatsOctets_get(
more power than there is           | poe        |        | calls disagree                 | sal_poe_total_power_allocated_query_get()
power from every port              | poe        |        | calls disagree                 | sal_poe_port_status_query_get(
a priority of 4                    | poe        |        | value out of range             | sal_poe_port_ext_config_query_get(
a word for a byte                  | poe        |        | wrote beyond the buffer        | sal_poe_port_ext_config_query_get(
VLANs out of order                 | vlan       | change | out of order                   | sal_vlan_adminEntrySort_get(1)
a VLAN that the mask forgets       | vlan       |        | calls disagree                 | sal_vlan_adminEntryExist_ret(1) = 1
memberships forgotten              | vlan       |        | calls disagree                 | sal_vlan_adminEntry_get(1)
a half of a whole                  | vlan       | change | changed by a refused call      | sal_vlan_portAdminVlanmask_add(
a PVID without a VLAN              | vlan       |        | calls disagree                 | sal_vlan_adminEntryExist_ret(77) = 0
a long name cut                    | vlan       | change | invalid call accepted          | sal_vlan_adminEntry_create(4094, "nnn
a short VLAN list                  | vlan       |        | calls disagree                 | sys_util_str2Vlanmask("0,2,4,
a mask cleared on failure          | vlan       |        | output touched on failure      | sys_util_str2Vlanmask("x")
a mask that is added to            | vlan       |        | calls disagree                 | sys_util_str2Vlanmask("1")
changed by a refusal               | voice_vlan | change | changed by a refused call      | sal_vlan_voiceVlanAging_set(29)
a voice VLAN without an id         | voice_vlan | change | invalid call accepted          | sal_vlan_voiceVid_set(4095)
descriptions forgotten             | voice_vlan | change | value not stored               | sal_vlan_voiceVlanOui_get(
a full table that takes            | voice_vlan | change | invalid call accepted          | sal_vlan_voiceVlanOui_add(
a size of its own                  | l2         |        | calls disagree                 | sal_l2_macTbl_size_get()
a snapshot that shifts             | l2         |        | result does not repeat         | sal_l2_macEntry_get(
an entry behind the last           | l2         |        | invalid call accepted          | sal_l2_macEntry_get(4)
everything static                  | l2         |        | calls disagree                 | sal_l2_static_macEntry_search(
members without a role             | trunk      | change | calls disagree                 | sys_trunk_portRole_ret(
a role for any number              | trunk      |        | calls disagree                 | sys_trunk_portRole_ret(-1) = 5
a ninth member dropped             | trunk      | change | invalid call accepted          | sal_trunk_staticMember_set(0, {
a group that stays                 | trunk      | change | value not stored               | sal_trunk_member_get(
strangers that speak first         | trunk      | change | invalid call accepted          | sal_lacp_activeMode_set(
a mirror that is always on         | mirror     |        | calls disagree                 | sal_mirror_group_targetPort_get(
traffic at no target               | mirror     | change | invalid call accepted          | sal_mirror_group_igrState_set(0, 1)
sources forgotten                  | mirror     | change | value not stored               | sal_mirror_group_del(0)
success without an output          | qos        |        | output not written             | sal_qos_trustType_get()
a neighbour set, too               | qos        | change | changed something else         | sal_qos_cosQueue_set(
set while QoS is off               | qos        | change | invalid call accepted          | sal_qos_portCos_set(0, 0)
a list's name cut                  | acl        | change | invalid call accepted          | sal_acl_entry_create("nnn
a bound list deleted               | acl        | change | invalid call accepted          | sal_acl_entry_del("platform_judge_mac", 1)
a name padded to 64                | acl        | change | wrote beyond the buffer        | sal_acl_entry_nameByIdx_get(1, 0)
entries out of order               | acl        | change | out of order                   | sal_ace_entry_byIdx_get("platform_judge_mac", 1, 1)
a priority rounded down            | stp        | change | invalid call accepted          | sal_stp_priority_set(1)
a root behind a port of its own    | stp        |        | calls disagree                 | sal_stp_mstInfo_get(0)
a priority with the instance       | stp        |        | value out of range             | sal_stp_mstInfo_get(0)
a crash                            | stp        |        | crashed                        | sal_stp_info_get()
version 4                          | igmp       |        | value out of range             | sal_igmp_info_get()
a call that does not return        | igmp       | hang   | did not return                 | sal_igmp_lookupMode_get()
a record cleared on failure        | igmp       |        | output touched on failure      | sal_mcast_vlan_get(
timers that do not go together     | lldp       | change | invalid call accepted          | sal_lldp_holdtime_set(3)
a neighbour of another port        | lldp       |        | calls disagree                 | sal_lldp_portRemoteEntryInfo_get(0, 0)
no group is a failure              | snmp       |        | valid call refused             | sal_snmp_groupIndex_get("platform_judge_none", 0) = 9
a field without an end             | snmp       |        | text not terminated            | sal_snmp_target_get(
a community that stays             | snmp       | change | value not stored               | sal_snmp_com2sec_get(
a third partition                  | firmware   |        | value out of range             | sal_sys_dualImageCurrSel_get()
a digest of 33 bytes               | firmware   |        | wrote beyond the buffer        | sal_sys_fwImageHdrInfo_get(0)
a version without an end           | firmware   |        | text not terminated            | sal_filter_ver_get(
bytes the other way round          | util       |        | calls disagree                 | sys_util_ip2Str(3221225985)
any MAC address                    | util       |        | invalid call accepted          | sys_util_str2Mac("")
digits and more                    | util       |        | invalid call accepted          | sys_util_str2ul_ret("12x")
a token without an end             | util       |        | text not terminated            | sys_util_getnext("1-5", 45)
a terminator behind the copy       | util       |        | wrote beyond the buffer        | sys_util_namestrcpy(
a set replaced                     | util       |        | calls disagree                 | sal_util_numstr2bitmap("1")
the end counted                    | util       |        | calls disagree                 | sys_util_bitmaskIsClear_ret(words, 0, 8)
a byte before the buffer           | vxcloud    |        | wrote beyond the buffer        | sal_vxcloud_key_get()
half a secret                      | vxcloud    | change | value not stored               | sal_vxcloud_secret_set((126 characters))
a host cut                         | vxcloud    | change | invalid call accepted          | sal_vxcloud_checkin_host_set("jjj
a lock taken twice                 | diag       | change | invalid call accepted          | sal_sys_tracerouteLock_take()
a cable at a group                 | diag       | cable  | invalid call accepted          | sal_cablediag_copper_set(20) = 0
a static buffer                    | together   |        | differs when called from two   | sal_sys_systemName_get()
locks in another order             | together   | hang   | did not return                 | sal_qos_mode_get()
no answer to a handler             | together   |        | differs in a signal handler    | sal_sys_httpEnable_get() = 1
a handler that waits for ever      | together   | hang   | did not return                 | sal_sys_telnetdEnable_get()
a driver that takes any command    | driver     |        | invalid call accepted          | ioctl(2147483647)
a record of four bytes more        | driver     |        | wrote beyond the buffer        | ioctl(4418) of rsd_trunk_activeMember_get
"""

ROWS = [[word.strip() for word in line.split("|")] for line in HABITS.strip().splitlines()]

# Those that show only over a restart, which is another test's.
OVER_A_RESTART = {
    "a save that loses": ("not kept over a restart", "sal_swctrl_poe_led_mode_set"),
    "a number not stored at once": ("not kept over a restart", "sal_vxcloud_seqno_set"),
    "a name that saves itself": ("kept without a save", "sal_sys_systemName_set"),
}
IN_AN_INTERRUPTION = {"a crash in a setter", "a slow setter"}


def judge(habit, folder, *options):
    """The findings of one run, as (reason, call), and what was printed."""
    run = subprocess.run([PROGRAM, "--root", "board", "--json", "report.json", *options],
                         cwd=folder, text=True, capture_output=True, timeout=240,
                         env={**os.environ, "PLATFORM_HABIT": habit})
    report = json.loads((pathlib.Path(folder) / "report.json").read_text())
    return [(finding["reason"], finding["call"]) for finding in report["findings"]], run


def fault_of(row):
    """What is wrong with the judgement of one habit; None for nothing."""
    habit, family, options, reason, call = row
    with tempfile.TemporaryDirectory(prefix="vx_habit_") as folder:
        found, run = judge(habit, folder, "--family", family, *BESIDE_READS.get(options, []))
    if run.returncode != 1:
        return f"{habit}: the judge exited with {run.returncode}: {run.stderr[-2000:]}"
    if not any(why.startswith(reason) and call in made for why, made in found):
        return f"{habit}: not '{reason}' at {call}, but {found[:6]}"
    return None


class Habits(unittest.TestCase):
    maxDiff = None

    def test_each_bad_habit_is_convicted_for_its_own_reason(self):
        with concurrent.futures.ThreadPoolExecutor(2) as pool:
            faults = [fault for fault in pool.map(fault_of, ROWS) if fault]
        self.assertEqual("", "\n".join(faults))

    def test_without_a_habit_the_same_program_acquits(self):
        with tempfile.TemporaryDirectory(prefix="vx_habit_") as folder:
            found, run = judge("none", folder, "--change")
        self.assertEqual(([], 0), (found, run.returncode), run.stderr)

    def test_every_habit_is_judged(self):
        written = (SOURCE / "tests/judge/habits.cpp").read_text()
        known = {row[0] for row in ROWS} | set(OVER_A_RESTART) | IN_AN_INTERRUPTION
        habits = {part.split('"')[0] for part in written.split('has("')[1:]}
        self.assertEqual(known, habits)
        self.assertGreaterEqual(len(known), 40)


class Restart(unittest.TestCase):
    """A new process is a restart of the simulated switch."""

    def findings(self, habit):
        with tempfile.TemporaryDirectory(prefix="vx_habit_") as folder:
            runs = [judge(habit, folder, "--restart-test") for _ in range(3)]
            left = sorted(pathlib.Path(folder).glob("*.journal*"))
        self.assertEqual([], left)
        return [finding for found, _ in runs for finding in found]

    def test_a_library_that_keeps_what_it_must_is_acquitted(self):
        self.assertEqual([], self.findings("none"))

    def test_a_library_that_keeps_too_little_or_too_much_is_convicted(self):
        for habit, expected in OVER_A_RESTART.items():
            with self.subTest(habit=habit):
                self.assertIn(expected, self.findings(habit))
