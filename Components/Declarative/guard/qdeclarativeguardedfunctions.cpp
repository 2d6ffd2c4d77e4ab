#include "qdeclarativeguardedfunctions_p.h"

#include "qdeclarativeguard.h"
#include "qdeclarativeguardedcode_p.h"
#include "qdeclarativeguards_p.h"

#include <QtCore/QThread>
#include <QtQml/QJSEngine>
#include <QtQml/QQmlEngine>

#include <private/qv4engine_p.h>
#include <private/qv4functionobject_p.h>
#include <private/qv4persistent_p.h>
#include <private/qv4scopedvalue_p.h>
#include <private/qv4stackframe_p.h>

#include <algorithm>
#include <array>
#include <tuple>
#include <unordered_map>

using namespace QV4;
using QDeclarativeGuardedFunctions::Place;

namespace {

enum Name { Quit, Exit, OpenUrlExternally, Include, CreateQmlObject, OpenRequest, NameCount };

/** The functions that were in their place before, where no script gets at them. */
using Originals = std::array<PersistentValue, NameCount>;

std::unordered_map<const QQmlEngine *, Originals> &originals()
{
    static std::unordered_map<const QQmlEngine *, Originals> all;
    return all;
}

// Where in a script the running function was called.
Place placeOf(const ExecutionEngine *engine)
{
    const CppStackFrame *frame = engine->currentStackFrame;
    while (frame && !frame->v4Function)
        frame = frame->parent;
    return frame ? Place{QUrl(frame->source()), frame->lineNumber()} : Place();
}

/** One call of a function that asks the guard. */
class Call
{
public:
    Call(Name name, const FunctionObject *function, const Value *self, const Value *given, int count)
        : name(name)
        , self(self)
        , count(count)
        , engine(function->engine())
        , guard(QDeclarativeGuards::of(engine->qmlEngine()))
        , scope(engine)
        , values(scope.alloc(count))
    {
        std::copy(given, given + count, values);
    }

    ReturnedValue goThrough() const
    {
        // A value that has no text has thrown.
        if (engine->hasException)
            return Encode::undefined();
        ScopedFunctionObject original(scope, originals().at(engine->qmlEngine())[name].value());
        return original->call(self, values, count);
    }

    ReturnedValue refuse(const QString &what) const
    {
        tell(what);
        return engine->throwError(QStringLiteral("Access denied: ") + what);
    }

    void tell(const QString &what) const
    {
        const Place place = placeOf(engine);
        guard->refused(what, place.file, place.line);
    }

    // An object may have another text each time, so that the text takes its place.
    QString text(int index) const
    {
        if (index >= count)
            return {};
        const QString text = values[index].toQString();
        values[index] = Value::fromHeapObject(engine->newString(text));
        return text;
    }

    QUrl address(int index) const { return engine->resolvedUrl(text(index)); }

    const Name name;
    const Value *const self;
    const int count;
    ExecutionEngine *const engine;
    const std::shared_ptr<QDeclarativeGuard> guard;
    Scope scope;
    Value *const values;
};

ReturnedValue quit(const FunctionObject *function, const Value *self, const Value *values, int count)
{
    const Call call(Quit, function, self, values, count);
    return call.guard ? call.refuse(QStringLiteral("Qt.quit()")) : call.goThrough();
}

ReturnedValue leave(const FunctionObject *function, const Value *self, const Value *values, int count)
{
    const Call call(Exit, function, self, values, count);
    return call.guard ? call.refuse(QStringLiteral("Qt.exit()")) : call.goThrough();
}

ReturnedValue openUrlExternally(const FunctionObject *function, const Value *self, const Value *values,
                                int count)
{
    const Call call(OpenUrlExternally, function, self, values, count);
    if (!call.guard || count != 1)
        return call.goThrough();
    const QUrl url = call.address(0);
    const bool isOpened = call.guard->openUrlExternally(url);
    if (!isOpened)
        call.tell(QStringLiteral("Qt.openUrlExternally(\"%1\")").arg(url.toString()));
    return Encode(isOpened);
}

ReturnedValue include(const FunctionObject *function, const Value *self, const Value *values, int count)
{
    const Call call(Include, function, self, values, count);
    if (!call.guard || count == 0)
        return call.goThrough();
    const QUrl url = call.address(0);
    if (!call.guard->admits(url))
        return call.refuse(QStringLiteral("Qt.include(\"%1\")").arg(url.toString()));
    const bool isAdmitted =
        QDeclarativeGuardedCode::isAdmitted(*call.guard, url, QQmlAbstractUrlInterceptor::JavaScriptFile);
    return isAdmitted ? call.goThrough() : call.engine->throwError(QStringLiteral("Access denied"));
}

ReturnedValue createQmlObject(const FunctionObject *function, const Value *self, const Value *values,
                              int count)
{
    const Call call(CreateQmlObject, function, self, values, count);
    if (!call.guard || count == 0)
        return call.goThrough();
    // What lies beside that address can be named without an import.
    const QUrl base = count > 2 ? call.address(2) : placeOf(call.engine).file;
    if (!call.guard->admits(base))
        return call.refuse(QDeclarativeGuards::message(base));
    const bool isAdmitted = QDeclarativeGuardedCode::isDocumentAdmitted(*call.guard, call.text(0), base);
    return isAdmitted ? call.goThrough() : call.engine->throwError(QStringLiteral("Access denied"));
}

ReturnedValue openRequest(const FunctionObject *function, const Value *self, const Value *values, int count)
{
    const Call call(OpenRequest, function, self, values, count);
    if (!call.guard || count < 2)
        return call.goThrough();
    const QString method = call.text(0).toUpper();
    const QUrl url = call.address(1);
    const bool isReading = method == QLatin1String("GET") || method == QLatin1String("HEAD");
    if (isReading && call.guard->admits(url))
        return call.goThrough();
    return call.refuse(QStringLiteral("XMLHttpRequest \"%1 %2\"").arg(method, url.toString()));
}

using Function = ReturnedValue (*)(const FunctionObject *, const Value *, const Value *, int);

void replace(Object *object, const char *name, Function function, PersistentValue *original)
{
    Scope scope(object->engine());
    ScopedString key(scope, scope.engine->newString(QString::fromLatin1(name)));
    original->set(scope.engine, object->get(key));
    ScopedFunctionObject before(scope, original->value());
    Scoped<FunctionObject> replacement(
        scope, FunctionObject::createBuiltinFunction(scope.engine, key, function, before->getLength()));
    object->defineDefaultProperty(QString::fromLatin1(name), replacement);
}

ReturnedValue member(Object *object, const char *name)
{
    Scope scope(object->engine());
    ScopedString key(scope, scope.engine->newString(QString::fromLatin1(name)));
    return object->get(key);
}

} // namespace

QDeclarativeGuardedFunctions::Place QDeclarativeGuardedFunctions::placeOf(const QQmlEngine *engine)
{
    return QThread::currentThread() == engine->thread() ? ::placeOf(engine->handle()) : Place();
}

void QDeclarativeGuardedFunctions::install(QQmlEngine *engine)
{
    const auto added = originals().emplace(std::piecewise_construct, std::make_tuple(engine), std::tuple<>());
    if (!added.second)
        return;
    Originals &before = added.first->second;
    Scope scope(engine->handle());
    ScopedObject qt(scope, member(scope.engine->globalObject, "Qt"));
    ScopedObject request(scope, member(scope.engine->globalObject, "XMLHttpRequest"));
    ScopedObject requests(scope, member(request, "prototype"));
    replace(qt, "quit", quit, &before[Quit]);
    replace(qt, "exit", leave, &before[Exit]);
    replace(qt, "openUrlExternally", openUrlExternally, &before[OpenUrlExternally]);
    replace(qt, "include", include, &before[Include]);
    replace(qt, "createQmlObject", createQmlObject, &before[CreateQmlObject]);
    replace(requests, "open", openRequest, &before[OpenRequest]);
}

bool QDeclarativeGuardedFunctions::refuses(QQmlEngine *engine, const QString &what)
{
    const auto guard = QDeclarativeGuards::of(engine);
    if (!guard)
        return false;
    ExecutionEngine *const scripts = engine->handle();
    const Place place = placeOf(engine);
    guard->refused(what, place.file, place.line);
    if (scripts->currentStackFrame)
        scripts->throwError(QStringLiteral("Access denied: ") + what);
    return true;
}

void QDeclarativeGuardedFunctions::forget(QQmlEngine *engine)
{
    originals().erase(engine);
}
