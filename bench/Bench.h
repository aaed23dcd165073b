#pragma once

#include "app/Application.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace rivenfall {

/// A running program for the length of one benchmark: the Application with its windows.
class RunningProgram {
public:
    RunningProgram();
    ~RunningProgram();

    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;

    Application* operator->() const;

    /// Opens the document of @p count nodes that VisitSample tells of.
    void OpenSample(int count);

private:
    QTemporaryDir Folder;
};

/// Adds the nodes that VisitSample tells of to the compilers @p root.
void FillCompilers(DataNodes& root, int count);

/// Writes a document of @p count such nodes to the file @p fileName.
void WriteSample(const QString& fileName, int count);

/// Lays out and paints what is due.
void ProcessEvents();

/// Keeps a result from being optimised away.
using benchmark::DoNotOptimize;

} // namespace rivenfall
