<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ko_KR" sourcelanguage="en">
<context>
    <name>ObjectTarget</name>
    <message>
        <source>Current Value</source>
        <translation>현재값</translation>
    </message>
    <message>
        <source>Current Value with Unit</source>
        <translation>현재값(단위 포함)</translation>
    </message>
    <message>
        <source>Point Name</source>
        <translation>포인트 이름</translation>
    </message>
    <message>
        <source>Status Name</source>
        <translation>상태 이름</translation>
    </message>
    <message>
        <source>Station Name</source>
        <translation>스테이션 이름</translation>
    </message>
    <message>
        <source>Full Name</source>
        <translation>전체 이름</translation>
    </message>
    <message>
        <source>On Count in this day</source>
        <translation>금일 ON 횟수</translation>
    </message>
    <message>
        <source>Off Count in this day</source>
        <translation>금일 OFF 횟수</translation>
    </message>
    <message>
        <source>On Duration in this day</source>
        <translation>금일 ON 지속 시간</translation>
    </message>
    <message>
        <source>Off Duration in this day</source>
        <translation>금일 OFF 지속 시간</translation>
    </message>
    <message>
        <source>Total On Count</source>
        <translation>전체 ON 횟수</translation>
    </message>
    <message>
        <source>Total Off Count</source>
        <translation>전체 OFF 횟수</translation>
    </message>
    <message>
        <source>Total On Duration</source>
        <translation>전체 ON 지속 시간</translation>
    </message>
    <message>
        <source>Total Off Duration</source>
        <translation>전체 OFF 지속 시간</translation>
    </message>
    <message>
        <source>On Count in this month</source>
        <translation>금월 ON 횟수</translation>
    </message>
    <message>
        <source>Off Count in this month</source>
        <translation>금월 OFF 횟수</translation>
    </message>
    <message>
        <source>On Duration in this month</source>
        <translation>금월 ON 지속 시간</translation>
    </message>
    <message>
        <source>Off Duration in this month</source>
        <translation>금월 OFF 지속 시간</translation>
    </message>
    <message>
        <source>Time Maximum Value</source>
        <translation>시간 최대값</translation>
    </message>
    <message>
        <source>Time Minimum Value</source>
        <translation>시간 최소값</translation>
    </message>
    <message>
        <source>Time Avarge Value</source>
        <translation>시간 평균값</translation>
    </message>
    <message>
        <source>Time accumulated Value</source>
        <translation>시간 적산값</translation>
    </message>
    <message>
        <source>Time Minimum Time</source>
        <translation>시간 최소값 시각</translation>
    </message>
    <message>
        <source>Time Maximum Time</source>
        <translation>시간 최대값 시각</translation>
    </message>
    <message>
        <source>Today Maximum Value</source>
        <translation>금일 최대값</translation>
    </message>
    <message>
        <source>Today Minimum Value</source>
        <translation>금일 최소값</translation>
    </message>
    <message>
        <source>Today Avarge Value</source>
        <translation>금일 평균값</translation>
    </message>
    <message>
        <source>Today accumulated Value</source>
        <translation>금일 적산값</translation>
    </message>
    <message>
        <source>Today Minimum Time</source>
        <translation>금일 최소값 시각</translation>
    </message>
    <message>
        <source>Today Maximum Time</source>
        <translation>금일 최대값 시각</translation>
    </message>
    <message>
        <source>Month Maximum Value</source>
        <translation>금월 최대값</translation>
    </message>
    <message>
        <source>Month Minimum Value</source>
        <translation>금월 최소값</translation>
    </message>
    <message>
        <source>Month Avarge Value</source>
        <translation>금월 평균값</translation>
    </message>
    <message>
        <source>Month accumulated Value</source>
        <translation>금월 적산값</translation>
    </message>
    <message>
        <source>Month Minimum Time</source>
        <translation>금월 최소값 시각</translation>
    </message>
    <message>
        <source>Month Maximum Time</source>
        <translation>금월 최대값 시각</translation>
    </message>
    <message>
        <source>Total Maximum Value</source>
        <translation>전체 최대값</translation>
    </message>
    <message>
        <source>Total Minimum Value</source>
        <translation>전체 최소값</translation>
    </message>
    <message>
        <source>Total Avarge Value</source>
        <translation>전체 평균값</translation>
    </message>
    <message>
        <source>Total accumulated Value</source>
        <translation>전체 적산값</translation>
    </message>
    <message>
        <source>Total Minimum Time</source>
        <translation>전체 최소값 시각</translation>
    </message>
    <message>
        <source>Total Maximum Time</source>
        <translation>전체 최대값 시각</translation>
    </message>
    <message>
        <source>On Count in this hour</source>
        <translation>시간 ON 횟수</translation>
    </message>
    <message>
        <source>Off Count in this hour</source>
        <translation>시간 OFF 횟수</translation>
    </message>
    <message>
        <source>On Duration in this hour</source>
        <translation>시간 ON 지속 시간</translation>
    </message>
    <message>
        <source>Off Duration in this hour</source>
        <translation>시간 OFF 지속 시간</translation>
    </message>
    <message>
        <source>Maximum Value of Week</source>
        <translation>금주 최대값</translation>
    </message>
    <message>
        <source>Minimum Value of Week</source>
        <translation>금주 최소값</translation>
    </message>
    <message>
        <source>Avarge Value of Week</source>
        <translation>금주 평균값</translation>
    </message>
    <message>
        <source>Accumulated Value of Week</source>
        <translation>금주 적산값</translation>
    </message>
    <message>
        <source>Minimum Value Time of Week</source>
        <translation>금주 최소값 시각</translation>
    </message>
    <message>
        <source>Maximum Value Time of Week</source>
        <translation>금주 최대값 시각</translation>
    </message>
    <message>
        <source>Year Maximum Value</source>
        <translation>금년 최대값</translation>
    </message>
    <message>
        <source>Year Minimum Value</source>
        <translation>금년 최소값</translation>
    </message>
    <message>
        <source>Year Avarge Value</source>
        <translation>금년 평균값</translation>
    </message>
    <message>
        <source>Year accumulated Value</source>
        <translation>금년 적산값</translation>
    </message>
    <message>
        <source>Year Minimum Time</source>
        <translation>금년 최소값 시각</translation>
    </message>
    <message>
        <source>Year Maximum Time</source>
        <translation>금년 최대값 시각</translation>
    </message>
    <message>
        <source>On Count in this year</source>
        <translation>금년 ON 횟수</translation>
    </message>
    <message>
        <source>Off Count in this year</source>
        <translation>금년 OFF 횟수</translation>
    </message>
    <message>
        <source>On Duration in this year</source>
        <translation>금년 ON 지속 시간</translation>
    </message>
    <message>
        <source>Off Duration in this year</source>
        <translation>금년 OFF 지속 시간</translation>
    </message>
    <message>
        <source>Update Time</source>
        <translation>갱신 시각</translation>
    </message>
    <message>
        <source>Comm State</source>
        <translation>통신 상태</translation>
    </message>
    <message>
        <source>Scan State</source>
        <translation>스캔 상태</translation>
    </message>
    <message>
        <source>Today Comm. Ratio</source>
        <translation>금일 통신율</translation>
    </message>
    <message>
        <source>Total Comm. Ratio</source>
        <translation>전체 통신율</translation>
    </message>
    <message>
        <source>Comm. Online Time</source>
        <translation>통신 연결 시각</translation>
    </message>
    <message>
        <source>Comm. Offline Time</source>
        <translation>통신 단절 시각</translation>
    </message>
    <message>
        <source>Driver State</source>
        <translation>드라이버 상태</translation>
    </message>
    <message>
        <source>HiHi</source>
        <translation>상상한</translation>
    </message>
    <message>
        <source>LowLow</source>
        <translation>하하한</translation>
    </message>
    <message>
        <source>Hi</source>
        <translation>상한</translation>
    </message>
    <message>
        <source>Low</source>
        <translation>하한</translation>
    </message>
    <message>
        <source>Point Description</source>
        <translation>포인트 설명</translation>
    </message>
    <message>
        <source>DisplayName</source>
        <translation>표시 이름</translation>
    </message>
    <message>
        <source>Past Max Value</source>
        <translation>과거 최대값</translation>
    </message>
    <message>
        <source>Past Min Value</source>
        <translation>과거 최소값</translation>
    </message>
    <message>
        <source>Past Mean Value</source>
        <translation>과거 평균값</translation>
    </message>
    <message>
        <source>Past Accumulated Value</source>
        <translation>과거 적산값</translation>
    </message>
    <message>
        <source>Past Moment Value</source>
        <translation>과거 순시값</translation>
    </message>
    <message>
        <source>Latest Scan Time</source>
        <translation>최근 스캔 시각</translation>
    </message>
</context>
<context>
    <name>ScadaSummaryWidgetInterface</name>
    <message>
        <source>Scada Summary</source>
        <translation>SCADA 요약</translation>
    </message>
</context>
</TS>
