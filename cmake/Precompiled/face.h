// What the application's sources read that draw or talk to the desktop.
#pragma once
#include "core.h"
#include <QApplication>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QQuickWindow>
#include <QScreen>
#include <QWindow>
