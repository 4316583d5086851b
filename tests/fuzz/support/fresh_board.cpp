// The board is made once; what a run has changed is put back by whatever costs least.
#include "tests/fuzz/support/fresh_board.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "tests/fuzz/support/reached.h"
#include "tests/support/fresh_agent.h"
#include "tests/support/temp_folder.h"

// The whole stack of each allocation, and memory that is never used again, take as long as the run.
// ASAN_OPTIONS=malloc_context_size=30 shows whole stacks when a find is replayed.
extern "C" const char* __asan_default_options() {
    return "malloc_context_size=3:quarantine_size_mb=4";
}

namespace {

constexpr int logical_ports = 16; // the last ten are two fibre ports and eight groups
constexpr int most_vlans = 32;    // a port's list of all VLANs would create each of them

// Files that the agent leaves on the board.
constexpr const char* left_files[] = {
    "/dev/console",         "/tmp/arpinfo",        "/tmp/traceroute_tmp0", "/tmp/pingtest_tmp",
    "/tmp/tmp_vmlinux.bix", "/tmp/tmp_backup.bix", "/tmp/vx_cloud_post",   "/etc/cloud.json"};

// Board folders of other tests are on the disk, where every write takes its time.
const TempFolder& memory_folder() {
    if (std::filesystem::is_directory("/dev/shm"))
        setenv("TMPDIR", "/dev/shm", 0);
    static const TempFolder folder;
    return folder;
}

// The result of a call that is not carried out.
void let_succeed(sim::Board& board, const char* call) {
    board.faults.plan({sim::Edge::platform, call, 1, true, 0, 0});
}

sim::Board& the_board() {
    static sim::Board board(memory_folder().path());
    return board;
}

void remove_files(const sim::Board& board) {
    for (const char* file : left_files)
        remove((board.root().native() + file).c_str());
}

void put_back(sim::Board& board) {
    reset_agent();
    board.trace.clear();
    board.log.clear();
    board.faults.clear();
    let_succeed(board, "cmd_conf_startupConfig_save");
    board.clock.restart();
    board.clock.set_ahead(0);
    std::destroy_at(&board.device);
    std::construct_at(&board.device, logical_ports);
    board.device.vlans.capacity = most_vlans;
    remove_files(board);
}

} // namespace

Run::Run() : board(the_board()) {
    static const bool prepared = [this] {
        board.trace.keep();
        put_back(board);
        return true;
    }();
    static_cast<void>(prepared);
}

Run::~Run() {
    note_reached();
    put_back(board);
}

void put_file(
    const sim::Board& board, const char* path, const std::uint8_t* data, std::size_t size) {
    std::ofstream((board.root().native() + path).c_str(), std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
}

// FNV-1a.
bool one_in(std::uint32_t count, const std::uint8_t* data, std::size_t size) {
    std::uint32_t hash = 2166136261;
    for (std::size_t i = 0; i < size; ++i)
        hash = (hash ^ data[i]) * 16777619;
    return hash % count == 0;
}
