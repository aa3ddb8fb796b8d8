// A clang plug-in that finds the places at which a program can be changed: reads the
// syntax tree of one translation unit and writes one JSON object a line to the file
// that its argument names.
//
//   {"file", "begin", "end"      which characters of which file the place is
//    "inner": [begin, end]       which of them stay, between the two texts that follow
//    "before", "after"           '\1' stands for the number of the change
//    "function", "kind", "change"}
//   {"file", "begin", "left"}    a place that is left out, and why
//
// Templates are seen as they are written, not as they are instantiated.
#include "processes.h"
#include "sourcetext.h"

#include <algorithm>
#include <clang/AST/ASTConsumer.h>
#include <clang/AST/ASTContext.h>
#include <clang/AST/RecursiveASTVisitor.h>
#include <clang/Frontend/CompilerInstance.h>
#include <clang/Frontend/FrontendPluginRegistry.h>
#include <llvm/Support/JSON.h>
#include <llvm/Support/raw_ostream.h>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace {

using namespace clang;
using namespace mutation;

class Places : public RecursiveASTVisitor<Places>, private SourceText {
    using Base = RecursiveASTVisitor<Places>;

  public:
    Places(ASTContext& context, std::string root, llvm::raw_ostream& out)
        : SourceText(context, std::move(root))
        , context(context)
        , sources(context.getSourceManager())
        , out(out) {}

    // Where nothing is computed when the program runs.
    bool TraverseTypeLoc(TypeLoc /*type*/) { return true; }
    bool TraverseNestedNameSpecifierLoc(NestedNameSpecifierLoc /*names*/) { return true; }
    bool TraverseTemplateArgumentLoc(const TemplateArgumentLoc& /*argument*/) { return true; }
    bool TraverseAttr(Attr* /*attribute*/) { return true; }
    bool TraverseConceptDecl(ConceptDecl* /*concept*/) { return true; }
    bool TraverseRequiresExpr(RequiresExpr* /*requirement*/) { return true; }
    bool TraverseUnaryExprOrTypeTraitExpr(UnaryExprOrTypeTraitExpr* /*size*/) { return true; }
    bool TraverseCXXNoexceptExpr(CXXNoexceptExpr* /*asked*/) { return true; }

    bool TraverseDecl(Decl* declaration) {
        if (declaration == nullptr)
            return true;
        if (declaration->getDeclContext() != nullptr &&
            declaration->getDeclContext()->isTranslationUnit() &&
            sources.isInSystemHeader(sources.getExpansionLoc(declaration->getLocation())))
            return true;
        const char* before = reason;
        if (isa<StaticAssertDecl>(declaration) || isa<EnumConstantDecl>(declaration))
            reason = "constant expression";
        else if (const auto* field = dyn_cast<FieldDecl>(declaration);
                 field != nullptr && field->isBitField())
            reason = "constant expression";
        else if (const auto* variable = dyn_cast<VarDecl>(declaration);
                 variable != nullptr && isConstant(variable))
            reason = "constant";
        auto* function = dyn_cast<FunctionDecl>(declaration);
        if (function != nullptr) {
            functions.push_back(function);
            if (function->isConsteval())
                reason = "constant expression";
            ProcessMaking making;
            if (function->doesThisDeclarationHaveABody())
                making.TraverseStmt(function->getBody());
            if (making.found)
                reason = "makes processes";
        }
        const bool going = Base::TraverseDecl(declaration);
        if (function != nullptr)
            functions.pop_back();
        reason = before;
        return going;
    }

    bool dataTraverseStmtPre(Stmt* statement) {
        if (constantExpressions.count(statement) != 0)
            reasons.push_back(std::exchange(reason, "constant expression"));
        else if (dangerous.count(statement) != 0)
            reasons.push_back(std::exchange(reason, "ends or starts processes"));
        if (auto* lambda = dyn_cast<LambdaExpr>(statement))
            functions.push_back(lambda->getCallOperator());
        return true;
    }
    bool dataTraverseStmtPost(Stmt* statement) {
        if (isa<LambdaExpr>(statement))
            functions.pop_back();
        if (constantExpressions.count(statement) != 0 || dangerous.count(statement) != 0) {
            reason = reasons.back();
            reasons.pop_back();
        }
        return true;
    }

    bool VisitCaseStmt(CaseStmt* label) {
        constantExpressions.insert(label->getLHS());
        if (label->getRHS() != nullptr)
            constantExpressions.insert(label->getRHS());
        statement(label->getSubStmt());
        return true;
    }
    bool VisitDefaultStmt(DefaultStmt* label) {
        statement(label->getSubStmt());
        return true;
    }
    bool VisitCompoundStmt(CompoundStmt* block) {
        for (Stmt* each : block->body())
            statement(each);
        return true;
    }

    bool VisitIfStmt(IfStmt* choice) {
        if (choice->isConstexpr())
            constantExpressions.insert(choice->getCond());
        else if (choice->getConditionVariable() == nullptr)
            condition(choice->getCond(), true);
        statement(choice->getThen());
        statement(choice->getElse());
        return true;
    }
    bool VisitConditionalOperator(ConditionalOperator* choice) {
        condition(choice->getCond(), true);
        return true;
    }
    // A loop that never ends would only cost time; its other parts are changed anyway.
    bool VisitWhileStmt(WhileStmt* loop) {
        if (loop->getConditionVariable() == nullptr)
            condition(loop->getCond(), false);
        statement(loop->getBody());
        return true;
    }
    bool VisitForStmt(ForStmt* loop) {
        condition(loop->getCond(), false);
        statement(loop->getBody());
        return true;
    }
    bool VisitDoStmt(DoStmt* loop) {
        condition(loop->getCond(), false);
        statement(loop->getBody());
        return true;
    }
    bool VisitCXXForRangeStmt(CXXForRangeStmt* loop) {
        statement(loop->getBody());
        return true;
    }

    bool VisitBinaryOperator(BinaryOperator* operation) {
        static const std::vector<std::pair<BinaryOperatorKind, BinaryOperatorKind>> others{
            {BO_Add, BO_Sub},
            {BO_Sub, BO_Add},
            {BO_Mul, BO_Div},
            {BO_Div, BO_Mul},
            {BO_Rem, BO_Div},
            {BO_LT, BO_LE},
            {BO_LE, BO_LT},
            {BO_GT, BO_GE},
            {BO_GE, BO_GT},
            {BO_EQ, BO_NE},
            {BO_NE, BO_EQ},
            {BO_LAnd, BO_LOr},
            {BO_LOr, BO_LAnd},
            {BO_Shl, BO_Shr},
            {BO_Shr, BO_Shl},
            {BO_And, BO_Or},
            {BO_Or, BO_And},
            {BO_Xor, BO_Or},
            {BO_AddAssign, BO_SubAssign},
            {BO_SubAssign, BO_AddAssign},
            {BO_MulAssign, BO_DivAssign},
            {BO_DivAssign, BO_MulAssign},
            {BO_AndAssign, BO_OrAssign},
            {BO_OrAssign, BO_AndAssign},
            {BO_ShlAssign, BO_ShrAssign},
            {BO_ShrAssign, BO_ShlAssign}};
        const auto other = std::find_if(others.begin(), others.end(), [&](const auto& pair) {
            return pair.first == operation->getOpcode();
        });
        if (other == others.end())
            return true;
        const QualType left = operation->getLHS()->getType();
        const QualType right = operation->getRHS()->getType();
        if (operation->isAdditiveOp() && right->isPointerType())
            return true;
        // Of a template's unknown type it may be a stream's.
        if (operation->isShiftOp() && (left->isDependentType() || right->isDependentType()))
            return true;
        exchange(operation, operation->getLHS(), operation->getRHS(),
                 BinaryOperator::getOpcodeStr(operation->getOpcode()),
                 BinaryOperator::getOpcodeStr(other->second));
        return true;
    }
    bool VisitCXXOperatorCallExpr(CXXOperatorCallExpr* call) {
        static const std::vector<std::pair<OverloadedOperatorKind, OverloadedOperatorKind>> others{
            {OO_EqualEqual, OO_ExclaimEqual}, {OO_ExclaimEqual, OO_EqualEqual},
            {OO_Less, OO_LessEqual},          {OO_LessEqual, OO_Less},
            {OO_Greater, OO_GreaterEqual},    {OO_GreaterEqual, OO_Greater}};
        for (const auto& [kind, other] : others)
            if (kind == call->getOperator() && call->getNumArgs() == 2)
                exchange(call, call->getArg(0), call->getArg(1), getOperatorSpelling(kind),
                         getOperatorSpelling(other));
        return true;
    }
    bool VisitCXXRewrittenBinaryOperator(CXXRewrittenBinaryOperator* comparison) {
        const llvm::StringRef written = BinaryOperator::getOpcodeStr(comparison->getOperator());
        static const std::vector<std::pair<llvm::StringRef, llvm::StringRef>> others{
            {"==", "!="}, {"!=", "=="}, {"<", "<="}, {"<=", "<"}, {">", ">="}, {">=", ">"}};
        for (const auto& [operation, other] : others)
            if (operation == written)
                exchange(comparison, const_cast<Expr*>(comparison->getLHS()),
                         const_cast<Expr*>(comparison->getRHS()), written, other);
        return true;
    }
    bool VisitUnaryOperator(UnaryOperator* operation) {
        const std::string operand = "(" + text(operation->getSubExpr()) + ")";
        switch (operation->getOpcode()) {
        case UO_LNot:
            expression(operation, "operator", "! -> ", "static_cast<bool>" + operand);
            break;
        case UO_Minus:
            expression(operation, "operator", "- -> ", operand);
            break;
        case UO_Not:
            expression(operation, "operator", "~ -> ", operand);
            break;
        case UO_PreInc:
            expression(operation, "operator", "++ -> --", "--" + operand);
            break;
        case UO_PreDec:
            expression(operation, "operator", "-- -> ++", "++" + operand);
            break;
        case UO_PostInc:
            expression(operation, "operator", "++ -> --", operand + "--");
            break;
        case UO_PostDec:
            expression(operation, "operator", "-- -> ++", operand + "++");
            break;
        default:
            break;
        }
        return true;
    }

    bool VisitIntegerLiteral(IntegerLiteral* number) {
        if (ignored.count(number) != 0)
            return true;
        const std::string written = text(number);
        expression(number, "constant", written + " -> + 1", "(" + written + " + 1)");
        if (number->getValue() != 0)
            expression(number, "constant", written + " -> - 1", "(" + written + " - 1)");
        return true;
    }
    bool VisitFloatingLiteral(FloatingLiteral* number) {
        const std::string written = text(number);
        if (number->getValue().isZero()) {
            expression(number, "constant", written + " -> + 1", "(" + written + " + 1)");
            return true;
        }
        expression(number, "constant", written + " -> * 1.25", "(" + written + " * 1.25F)");
        expression(number, "constant", written + " -> * 0.75", "(" + written + " * 0.75F)");
        return true;
    }
    bool VisitCharacterLiteral(CharacterLiteral* character) {
        const std::string written = text(character);
        expression(character, "constant", written + " -> + 1",
                   "static_cast<decltype(" + written + ")>(" + written + " + 1)");
        return true;
    }
    bool VisitCXXBoolLiteralExpr(CXXBoolLiteralExpr* truth) {
        expression(truth, "constant", truth->getValue() ? "true -> false" : "false -> true",
                   truth->getValue() ? "false" : "true");
        return true;
    }
    bool VisitUserDefinedLiteral(UserDefinedLiteral* literal) {
        for (Expr* argument : literal->arguments())
            ignored.insert(argument->IgnoreParenImpCasts());
        const std::string written = text(literal);
        const std::size_t quote = written.rfind('"');
        if (quote != std::string::npos) {
            if (written.front() == '"' && quote > 1)
                expression(literal, "constant", "text -> empty",
                           "\"\"" + written.substr(quote + 1));
        } else if (const std::size_t suffix = written.find_first_not_of("0123456789");
                   suffix != std::string::npos && suffix > 0) {
            expression(literal, "constant", written + " -> more",
                       std::to_string(std::stoull(written.substr(0, suffix)) * 2 + 1) +
                           written.substr(suffix));
        }
        return true;
    }
    bool VisitImplicitCastExpr(ImplicitCastExpr* cast) {
        Expr* inner = cast->getSubExpr()->IgnoreParens();
        switch (cast->getCastKind()) {
        case CK_NullToPointer:
        case CK_NullToMemberPointer:
            ignored.insert(cast->getSubExpr()->IgnoreParenImpCasts());
            break;
        case CK_ArrayToPointerDecay:
            if (auto* literal = dyn_cast<StringLiteral>(inner);
                literal != nullptr && ignored.count(literal) == 0 && literal->isAscii() &&
                literal->getLength() > 0) {
                const std::string written = text(literal);
                expression(literal, "constant", "text -> empty", "\"\"");
                expression(literal, "constant", "text -> other", "\"~\" " + written);
            }
            break;
        case CK_LValueToRValue:
            if (auto* name = dyn_cast<DeclRefExpr>(inner))
                namedConstant(name);
            break;
        default:
            break;
        }
        return true;
    }

    bool VisitCallExpr(CallExpr* call) {
        const std::string name = calleeOf(call);
        if (isDangerous(name)) {
            for (Expr* argument : call->arguments())
                dangerous.insert(argument);
            return true;
        }
        if (isa<CXXOperatorCallExpr>(call) || isa<UserDefinedLiteral>(call))
            return true;
        if (name == "min" || name == "max") {
            if (const auto* named =
                    dyn_cast<DeclRefExpr>(call->getCallee()->IgnoreParenImpCasts())) {
                const std::optional<Range> whole = range(call->getSourceRange());
                const std::optional<Range> word =
                    range({named->getLocation(), named->getLocation()});
                if (whole && word && whole->file == word->file)
                    expression(call, "call", name + " exchanged",
                               text(*whole, whole->begin, word->begin) +
                                   (name == "min" ? "max" : "min") +
                                   text(*whole, word->end, whole->end));
            }
            return true;
        }
        for (unsigned i = 0; i + 1 < call->getNumArgs(); ++i)
            swapped(call, name, i);
        return true;
    }

    bool VisitReturnStmt(ReturnStmt* answer) {
        Expr* value = answer->getRetValue();
        if (value == nullptr || functions.empty())
            return true;
        const QualType type = functions.back()->getReturnType();
        const Expr* bare = value->IgnoreUnlessSpelledInSource();
        if (type->isVoidType() || type->isReferenceType() || isa<CXXBoolLiteralExpr>(bare) ||
            isa<CXXNullPtrLiteralExpr>(bare) || isa<IntegerLiteral>(bare) ||
            isa<FloatingLiteral>(bare))
            return true;
        if (const auto* list = dyn_cast<InitListExpr>(bare);
            list != nullptr && list->getNumInits() == 0)
            return true;
        if (const auto* made = dyn_cast<CXXConstructExpr>(bare);
            made != nullptr && made->getNumArgs() == 0)
            return true;
        if (const auto* named = dyn_cast<DeclRefExpr>(bare);
            named != nullptr && named->getDecl()->getNameAsString() == "nullopt")
            return true;
        const std::string written = text(value);
        if (type->isBooleanType()) {
            // The operators there are changed into their contraries anyway.
            if (isa<BinaryOperator>(bare) || isa<UnaryOperator>(bare))
                return true;
            place(answer, "return", "-> not",
                  "if (::mutation::on(\1)) return !(" + written + "); else ", "");
            return true;
        }
        const bool deduced = type->getContainedAutoType() != nullptr || type->isUndeducedType() ||
                             (functions.back()->getParent()->isRecord() &&
                              cast<CXXRecordDecl>(functions.back()->getParent())->isLambda());
        place(answer, "return", "-> empty",
              deduced ? "if (::mutation::on(\1)) return std::remove_cvref_t<decltype(" + written +
                            ")>{}; else "
                      : std::string("if (::mutation::on(\1)) return {}; else "),
              "");
        return true;
    }

    // A guard that nobody names again: only its constructor and destructor count.
    bool VisitDeclStmt(DeclStmt* declared) {
        if (!declared->isSingleDecl())
            return true;
        const auto* variable = dyn_cast<VarDecl>(declared->getSingleDecl());
        if (variable == nullptr || !variable->isLocalVarDecl() || variable->isStaticLocal() ||
            variable->isReferenced() || variable->getType()->isDependentType() ||
            variable->getInit() == nullptr || variable->getInitStyle() == VarDecl::CInit ||
            variable->getType()->isReferenceType())
            return true;
        const CXXRecordDecl* guard = variable->getType()->getAsCXXRecordDecl();
        if (guard == nullptr || !guard->hasDefinition() || guard->hasTrivialDestructor() ||
            functions.empty() || functions.back()->isConstexpr())
            return true;
        const std::optional<Range> whole = range(variable->getSourceRange());
        const std::optional<Range> type =
            range(variable->getTypeSourceInfo()->getTypeLoc().getUnqualifiedLoc().getSourceRange());
        const std::optional<Range> name = range({variable->getLocation(), variable->getLocation()});
        if (!whole || !type || !name || type->begin < whole->begin || name->begin < type->end)
            return true;
        std::string made = text(*whole, type->begin, type->end);
        if (name->end == whole->end)
            made += "()";
        write(*whole, name->end, whole->end, "guard", made + " left out",
              "const ::mutation::Guard " + variable->getName().str() +
                  "(!::mutation::on(\1), [&]() { return " + made,
              "; })");
        return true;
    }

  private:
    // An initialiser that is computed by the compiler.
    bool isConstant(const VarDecl* variable) const {
        const Expr* value = variable->getInit();
        if (variable->isConstexpr())
            return true;
        if (value == nullptr || value->isValueDependent() || value->isTypeDependent() ||
            variable->getType()->isDependentType())
            return false;
        if (variable->hasGlobalStorage())
            return value->isConstantInitializer(context, variable->getType()->isReferenceType());
        return variable->getType().isConstQualified() &&
               variable->getType()->isIntegralOrEnumerationType() && value->isEvaluatable(context);
    }

    // A constant by name where its value is read.
    void namedConstant(DeclRefExpr* name) {
        const auto* variable = dyn_cast<VarDecl>(name->getDecl());
        if (variable == nullptr || variable->getType()->isDependentType() ||
            !variable->getType().isConstQualified() || !isConstant(variable))
            return;
        const QualType type = variable->getType();
        const std::string written = text(name);
        const auto changed = [&](const std::string& value, const char* what) {
            expression(name, "constant", written + what,
                       "static_cast<std::remove_cvref_t<decltype(" + written + ")>>(" + value +
                           ")");
        };
        if (type->isBooleanType())
            changed("!" + written, " -> not");
        else if (type->isIntegerType() && !type->isEnumeralType())
            changed(written + " + 1", " -> + 1");
        else if (type->isFloatingType())
            changed(written + " * 1.25F", " -> * 1.25");
    }

    // An expression whose value nobody takes.
    void statement(Stmt* each) {
        if (const auto* attributed = dyn_cast_or_null<AttributedStmt>(each))
            each = const_cast<Stmt*>(attributed->getSubStmt());
        auto* whole = dyn_cast_or_null<Expr>(each);
        if (whole == nullptr)
            return;
        const Expr* bare = whole->IgnoreUnlessSpelledInSource();
        while (const auto* cast = dyn_cast<ExplicitCastExpr>(bare))
            bare = cast->getSubExpr()->IgnoreUnlessSpelledInSource();
        std::string what;
        const char* kind = "call";
        if (const auto* assigned = dyn_cast<BinaryOperator>(bare);
            assigned != nullptr && assigned->isAssignmentOp()) {
            kind = "assignment";
            what = "left out";
        } else if (const auto* call = dyn_cast<CXXOperatorCallExpr>(bare)) {
            if (!call->isAssignmentOp())
                return;
            kind = "assignment";
            what = "left out";
        } else if (const auto* called = dyn_cast<CallExpr>(bare)) {
            const FunctionDecl* callee = called->getDirectCallee();
            if (callee != nullptr && callee->isNoReturn())
                return;
            what = calleeOf(called);
            if (isDangerous(what))
                return;
            what += " left out";
        } else {
            return;
        }
        place(whole, kind, what, "(::mutation::on(\1) ? void() : static_cast<void>(", "))");
    }

    void condition(Expr* asked, bool alwaysAsWell) {
        if (asked == nullptr || isa<CXXBoolLiteralExpr>(asked->IgnoreParenImpCasts()))
            return;
        if (alwaysAsWell)
            place(asked, "branch", "always", "(::mutation::on(\1) ? true : static_cast<bool>(",
                  "))");
        place(asked, "branch", "never", "(::mutation::on(\1) ? false : static_cast<bool>(", "))");
    }

    void exchange(Expr* whole, Expr* left, Expr* right, llvm::StringRef written,
                  llvm::StringRef other) {
        expression(whole, "operator", (written + " -> " + other).str(),
                   "(" + text(left) + ") " + other.str() + " (" + text(right) + ")");
    }

    void swapped(CallExpr* call, const std::string& name, unsigned i) {
        const Expr* one = call->getArg(i);
        const Expr* other = call->getArg(i + 1);
        if (one->isTypeDependent() || other->isTypeDependent() || isa<CXXDefaultArgExpr>(one) ||
            isa<CXXDefaultArgExpr>(other))
            return;
        const auto bare = [](const Expr* e) {
            return e->IgnoreUnlessSpelledInSource()
                ->getType()
                .getCanonicalType()
                .getUnqualifiedType();
        };
        if (bare(one) != bare(other))
            return;
        const std::optional<Range> whole = range(call->getSourceRange());
        const std::optional<Range> first = range(one->getSourceRange());
        const std::optional<Range> second = range(other->getSourceRange());
        if (!whole || !first || !second || first->file != whole->file ||
            second->file != whole->file || first->end > second->begin || text(one) == text(other))
            return;
        expression(
            call, "arguments", name + " " + std::to_string(i + 1) + " and " + std::to_string(i + 2),
            text(*whole, whole->begin, first->begin) + text(*whole, second->begin, second->end) +
                text(*whole, first->end, second->begin) + text(*whole, first->begin, first->end) +
                text(*whole, second->end, whole->end));
    }

    static std::string calleeOf(const CallExpr* call) {
        if (const auto* callee = dyn_cast_or_null<NamedDecl>(call->getCalleeDecl()))
            return callee->getNameAsString();
        const Expr* named = call->getCallee()->IgnoreParenImpCasts();
        if (const auto* member = dyn_cast<CXXDependentScopeMemberExpr>(named))
            return member->getMember().getAsString();
        if (const auto* unresolved = dyn_cast<OverloadExpr>(named))
            return unresolved->getName().getAsString();
        return "a function";
    }

    void expression(Expr* whole, const char* kind, const std::string& change,
                    const std::string& changed) {
        place(whole, kind, change, "(::mutation::on(\1) ? (" + changed + ") : ", ")");
    }

    template <class Node>
    void place(const Node* whole, const char* kind, const std::string& change,
               const std::string& before, const std::string& after) {
        const SourceRange written = whole->getSourceRange();
        const std::optional<Range> found = range(written);
        if (found) {
            write(*found, found->begin, found->end, kind, change, before, after);
        } else {
            const SourceLocation at = sources.getExpansionLoc(written.getBegin());
            if (const std::string name = fileOf(sources.getFileID(at)); !name.empty())
                left(name, sources.getFileOffset(at), "in a macro");
        }
    }

    void left(const std::string& file, unsigned begin, const char* why) {
        out << llvm::json::Value(
                   llvm::json::Object{{"file", file}, {"begin", begin}, {"left", why}})
            << '\n';
    }

    void write(const Range& whole, unsigned innerBegin, unsigned innerEnd, const char* kind,
               const std::string& change, const std::string& before, const std::string& after) {
        const std::string name = fileOf(whole.file);
        if (name.empty())
            return;
        if (reason != nullptr) {
            left(name, whole.begin, reason);
            return;
        }
        std::string function = "-";
        for (auto each = functions.rbegin(); each != functions.rend(); ++each) {
            const auto* member = dyn_cast<CXXMethodDecl>(*each);
            if (member == nullptr || !member->getParent()->isLambda()) {
                llvm::raw_string_ostream stream(function = "");
                PrintingPolicy policy(context.getLangOpts());
                policy.SuppressUnwrittenScope = true;
                (*each)->printQualifiedName(stream, policy);
                break;
            }
        }
        out << llvm::json::Value(
                   llvm::json::Object{{"file", name},
                                      {"begin", whole.begin},
                                      {"end", whole.end},
                                      {"inner", llvm::json::Array{innerBegin, innerEnd}},
                                      {"line", sources.getLineNumber(whole.file, whole.begin)},
                                      {"function", function},
                                      {"kind", kind},
                                      {"change", change},
                                      {"before", before},
                                      {"after", after}})
            << '\n';
    }

    ASTContext& context;
    SourceManager& sources;
    llvm::raw_ostream& out;
    std::vector<const FunctionDecl*> functions; // the innermost last
    const char* reason = nullptr;               // why places here are left out
    std::vector<const char*> reasons;           // those before it
    std::set<const Stmt*> constantExpressions;
    std::set<const Stmt*> dangerous;
    std::set<const Stmt*> ignored;
};

class PlacesConsumer : public ASTConsumer {
  public:
    PlacesConsumer(std::string root, std::string output)
        : root(std::move(root))
        , output(std::move(output)) {}
    void HandleTranslationUnit(ASTContext& context) override {
        std::error_code failure;
        llvm::raw_fd_ostream out(output, failure);
        if (failure)
            llvm::report_fatal_error(llvm::StringRef(failure.message()));
        Places(context, root, out).TraverseDecl(context.getTranslationUnitDecl());
    }

  private:
    std::string root;
    std::string output;
};

// Its two arguments: the folder that holds the sources, and the file to be written.
class PlacesAction : public PluginASTAction {
    std::unique_ptr<ASTConsumer> CreateASTConsumer(CompilerInstance& /*compiler*/,
                                                   llvm::StringRef /*file*/) override {
        return std::make_unique<PlacesConsumer>(root, output);
    }
    bool ParseArgs(const CompilerInstance& /*compiler*/,
                   const std::vector<std::string>& arguments) override {
        if (arguments.size() != 2)
            return false;
        root = arguments[0] + "/";
        output = arguments[1];
        return true;
    }
    ActionType getActionType() override { return ReplaceAction; }

    std::string root;
    std::string output;
};

const FrontendPluginRegistry::Add<PlacesAction> registration("mutation-places",
                                                             "finds what can be changed");

} // namespace
