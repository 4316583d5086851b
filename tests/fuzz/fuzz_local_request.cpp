// Files in the place of a local request. Whatever is in one, it is gone afterwards.
#include <signal.h>

#include <filesystem>
#include <fstream>

#include "agent_on_board.h"
#include "core/local_request.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    sim::Board& board = fresh_board();
    auto request = board.path("/tmp/vx_cloud_post");
    std::ofstream(request, std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    handleAction(SIGUSR1);
    require(!std::filesystem::exists(request));
    return 0;
}
