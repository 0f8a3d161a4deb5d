// The root of the framework's classes, with the run-time record of a class's name and base.
#pragma once

struct CRuntimeClass {
  const char *m_lpszClassName;
  const CRuntimeClass *m_pBaseClass;
};

#define RUNTIME_CLASS(className) (&className::class##className)

#define DECLARE_DYNAMIC(className)                                                                                     \
public:                                                                                                                \
  static const CRuntimeClass class##className;                                                                         \
  const CRuntimeClass *GetRuntimeClass() const override;                                                               \
                                                                                                                       \
private:

#define IMPLEMENT_DYNAMIC(className, baseName)                                                                         \
  const CRuntimeClass className::class##className = {#className, RUNTIME_CLASS(baseName)};                             \
  const CRuntimeClass *className::GetRuntimeClass() const { return RUNTIME_CLASS(className); }

class CObject {
public:
  static constexpr CRuntimeClass classCObject = {"CObject", nullptr};

  CObject() = default;
  CObject(const CObject &) = delete;
  CObject &operator=(const CObject &) = delete;
  virtual const CRuntimeClass *GetRuntimeClass() const { return RUNTIME_CLASS(CObject); }
  virtual ~CObject() = default;
};
