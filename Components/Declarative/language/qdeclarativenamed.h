#pragma once

/**
 * Lets qobject_cast() take a class that has the metaobject of @p Base, whose other name it is.
 *
 * The engine makes objects of Base; they pass for objects of the class, which adds no data and no virtual
 * function of its own.
 */
#define QDECLARATIVE_NAMED(Base)                                                                             \
public:                                                                                                      \
    int qt_metacall(QMetaObject::Call call, int id, void **arguments) override                               \
    {                                                                                                        \
        return Base::qt_metacall(call, id, arguments);                                                       \
    }                                                                                                        \
                                                                                                             \
private:
