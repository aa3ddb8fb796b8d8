// What is written where in the sources.
#pragma once

#include <clang/AST/ASTContext.h>
#include <clang/AST/Expr.h>
#include <clang/Basic/SourceManager.h>
#include <clang/Lex/Lexer.h>
#include <llvm/Support/Path.h>
#include <optional>
#include <string>
#include <utility>

namespace mutation {

// Some characters of a file, by their offsets.
struct Range {
    clang::FileID file;
    unsigned begin = 0;
    unsigned end = 0;
};

class SourceText {
  public:
    // `root` ends with a slash.
    SourceText(const clang::ASTContext& context, std::string root)
        : context(context)
        , sources(context.getSourceManager())
        , root(std::move(root)) {}

    // Below the root, or empty if the file is elsewhere.
    std::string fileOf(clang::FileID file) const {
        const clang::FileEntry* entry = sources.getFileEntryForID(file);
        if (entry == nullptr)
            return "";
        llvm::SmallString<256> path(entry->getName());
        llvm::sys::path::remove_dots(path, true);
        llvm::StringRef name = path;
        if (!name.consume_front(root))
            return "";
        return name.str();
    }

    // Nothing for what a macro makes.
    std::optional<Range> range(clang::SourceRange written) const {
        if (written.getBegin().isInvalid() || written.getBegin().isMacroID() ||
            written.getEnd().isMacroID())
            return {};
        const clang::SourceLocation end =
            clang::Lexer::getLocForEndOfToken(written.getEnd(), 0, sources, context.getLangOpts());
        const auto [file, begin] = sources.getDecomposedLoc(written.getBegin());
        const auto [endFile, endOffset] = sources.getDecomposedLoc(end);
        if (file != endFile || endOffset < begin)
            return {};
        return Range{file, begin, endOffset};
    }
    std::string text(const Range& in, unsigned begin, unsigned end) const {
        return sources.getBufferData(in.file).substr(begin, end - begin).str();
    }
    std::string text(const clang::Expr* expression) const {
        const clang::CharSourceRange written = clang::CharSourceRange::getTokenRange(
            sources.getExpansionRange(expression->getSourceRange()).getAsRange());
        return clang::Lexer::getSourceText(written, sources, context.getLangOpts()).str();
    }

  private:
    const clang::ASTContext& context;
    const clang::SourceManager& sources;
    std::string root;
};

} // namespace mutation
