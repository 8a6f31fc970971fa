#include "Shell/Help/HelpBlock.h"

namespace TarvaneApp {

namespace {

using namespace HelpBlocks;

struct Texts {
    std::vector<std::string> operator()(const Paragraph& block) const { return {block.text}; }
    std::vector<std::string> operator()(const Heading& block) const { return {block.text}; }
    std::vector<std::string> operator()(const Steps& block) const { return block.items; }
    std::vector<std::string> operator()(const Bullets& block) const { return block.items; }
    std::vector<std::string> operator()(const Tip& block) const { return {block.text}; }
    std::vector<std::string> operator()(const Shortcuts& block) const {
        std::vector<std::string> texts;
        for (const Shortcut& row : block.rows) {
            texts.push_back(row.keys);
            texts.push_back(row.action);
        }
        return texts;
    }
};

}  // namespace

std::vector<std::string> textsOf(const HelpBlock& block) {
    return std::visit(Texts{}, block);
}

}  // namespace TarvaneApp
