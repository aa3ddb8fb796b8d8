// Which calls make processes or end them. Changed ones could hurt the machine.
#pragma once

#include <clang/AST/RecursiveASTVisitor.h>

namespace mutation {

// What must not run with other arguments: it ends or starts processes.
inline bool isDangerous(llvm::StringRef name) {
    return name == "kill" || name == "killpg" || name == "tgkill" || name == "setrlimit" ||
           name == "syscall" || name.startswith("exec");
}
// A function that makes processes is left alone as a whole: a loop in it could make many.
inline bool makesProcesses(llvm::StringRef name) {
    return name == "fork" || name == "vfork" || name == "clone" || name.startswith("posix_spawn");
}

// Whether a function's body calls one that makes processes.
class ProcessMaking : public clang::RecursiveASTVisitor<ProcessMaking> {
  public:
    bool found = false;
    bool VisitCallExpr(clang::CallExpr* call) {
        const clang::FunctionDecl* callee = call->getDirectCallee();
        if (callee != nullptr && callee->getIdentifier() != nullptr &&
            makesProcesses(callee->getName()))
            found = true;
        return !found;
    }
};

} // namespace mutation
