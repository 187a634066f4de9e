// The library's base object: a virtual destructor and a class name, so that
// owners can delete framework objects through one pointer type.
#pragma once

class QObject {
 public:
  virtual ~QObject() = default;
  virtual const char *ClassName() const { return "QObject"; }
};

// One process-wide object that QApp::Exit deletes (through its virtual
// destructor) before the process ends. Replaces any earlier one.
void QSetDeleteAtExit(QObject *obj);
QObject *QGetDeleteAtExit();
