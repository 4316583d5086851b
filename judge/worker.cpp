// Running the steps in a child, and sending each finding through the pipe.
#include "judge/worker.h"

#include <signal.h>
#include <sys/mman.h>

#include "judge/bench.h"
#include "judge/family.h"
#include "judge/journal.h"
#include "judge/restart.h"
#include "judge/steps.h"

namespace judge {

namespace {

void stop(int) { Bench::stop_ = true; }

void tell_of_leftovers(const Options& options) {
    if (!journal->empty() && !options.change && !options.restore)
        bench->remark(
            "an earlier run was interrupted and has left changes: --restore puts them back");
}

} // namespace

int work(const Options& options) {
    void* memory =
        mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED, options.shared, 0);
    if (memory == MAP_FAILED)
        return 2;
    Bench here(options.worker, static_cast<Shared*>(memory));
    Journal changes(options.journal);
    bench = &here;
    journal = &changes;
    remember_restart_in(options.journal + ".restart");
    signal(SIGINT, stop);
    signal(SIGTERM, stop);
    if (options.from == 0)
        tell_of_leftovers(options);
    std::vector<Step> all = steps(options);
    for (int number = options.from; number < static_cast<int>(all.size()); ++number) {
        const Step& step = all[static_cast<std::size_t>(number)];
        if (Bench::stopped())
            return 3;
        here.begin(number, step.family, step.probe);
        step.judge();
        here.end();
    }
    return Bench::stopped() ? 3 : 0;
}

} // namespace judge
