// What judging a change needs: settings that are texts, what must stay as it is, and undoing what a
// judge has done, also when he is interrupted.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "judge/operation.h"
#include "platform/types.h"

namespace judge {

// Something that is undone at the end of its life by one call, which is in the journal until then.
// `call` is one of those in undo.cpp, with its arguments as texts.
class Undo {
  public:
    Undo(const std::string& call, std::vector<std::string> arguments);
    ~Undo();
    Undo(const Undo&) = delete;
    Undo& operator=(const Undo&) = delete;

  private:
    std::size_t line_;
};

// Makes the call of a line of the journal: 0 or a code; -1 for a line that is none.
int undo(const std::vector<std::string>& words);

// A set of ports as an argument of the journal's.
std::string words_text(const PortBitmap& ports);

// `work` is refused all through, and changes nothing that can be read.
void unchanged(const Operations& reads, const std::function<void()>& work);

// `work` puts back what it changes.
void back_as_before(const Operations& reads, const std::function<void()>& work);

// A setting that is a text: of every length, read back whole; a longer one than `longest` is
// refused. Where `longest` is 0 the library has its own limit, which is looked for.
struct TextSetting {
    const char* name;
    int (*set)(const char* text);
    const char* getter;
    int (*get)(char* text);
    std::size_t size; // of the getter's buffer
    std::size_t longest;
    bool secret = false; // never shown
};

void judge_text(const TextSetting& setting);

} // namespace judge
